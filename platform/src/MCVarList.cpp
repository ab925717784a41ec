#include "mccommon/MCVarList.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "mccommon/MCMissingValue.h"
#include "mccommon/MCVarEncoder.h"
#include "mccommon/MCVariable.h"

namespace MCMTD_NAMESPACE {
namespace {

constexpr int kRefused = -1;
constexpr int kNoWeight = -1;

struct Entry {
  explicit Entry(MCVariable&& v) : variable(std::move(v)) {}

  MCVariable variable;
  MCVarEncoder encoder;
};

// A range with its open ends as infinities, so that plain comparisons serve.
struct Bounds {
  double lower;
  double upper;
};

Bounds BoundsOf(const MCRange& range) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  return {range.minimum == MCMV::gMissingValue ? -kInfinity : range.minimum,
          range.maximum == MCMV::gMissingValue ? kInfinity : range.maximum};
}

bool IsCutPoint(double value) { return std::isfinite(value) && value != MCMV::gMissingValue; }

bool AreValidCutPoints(const std::vector<double>& points, const Bounds& bounds) {
  double previous = bounds.lower;
  for (const double point : points) {
    if (!IsCutPoint(point) || point <= previous) return false;
    previous = point;
  }
  return points.empty() || previous < bounds.upper;
}

bool IsValid(const MCRange& range) {
  if (!std::isfinite(range.minimum) || !std::isfinite(range.maximum)) return false;
  const Bounds bounds = BoundsOf(range);
  return bounds.lower <= bounds.upper && AreValidCutPoints(range.cutPoints, bounds);
}

}  // namespace

struct MCVarList::Store {
  // Each entry has a place of its own: callers keep pointers while the list grows.
  std::vector<std::unique_ptr<Entry>> entries;
  // The keys are views of the entries' own names.
  std::unordered_map<std::string_view, int> indexOfName;
  int weightIndex = kNoWeight;

  bool Accepts(const std::string& name) const {
    return !name.empty() && indexOfName.find(name) == indexOfName.end();
  }

  Entry* At(int index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= entries.size()) return nullptr;
    return entries[static_cast<std::size_t>(index)].get();
  }

  void MakeRoomForOne() {
    constexpr std::size_t kFirstCapacity = 16;
    if (entries.size() < entries.capacity()) return;
    entries.reserve(std::max(kFirstCapacity, 2 * entries.capacity()));
  }

  // The steps that can throw come first, and the last of them undoes itself.
  int Add(MCVariable&& variable) {
    auto entry = std::make_unique<Entry>(std::move(variable));
    MakeRoomForOne();
    const int index = static_cast<int>(entries.size());
    indexOfName.emplace(entry->variable.GetName(), index);
    entries.push_back(std::move(entry));
    return index;
  }

  template <class Value>
  int AddCategorical(const std::string& name, const std::string& label,
                     const std::vector<Value>& values, const std::vector<std::string>& valueLabels,
                     IMCVariable::VariableRole role) {
    if (!Accepts(name)) return kRefused;
    return Add(MCVariable(name, label, MCCategorySet(values, valueLabels), role));
  }

  int AddRanged(const std::string& name, const std::string& label, MCRange&& range,
                IMCVariable::VariableRole role) {
    if (!Accepts(name) || !IsValid(range)) return kRefused;
    return Add(MCVariable(name, label, std::move(range), role));
  }
};

MCVarList::MCVarList() : store_(std::make_unique<Store>()) {}

MCVarList::~MCVarList() = default;

int MCVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<double>& values,
                         const std::vector<std::string>& valueLabels,
                         IMCVariable::VariableRole role) {
  if (valueLabels.size() != values.size()) return kRefused;
  return store_->AddCategorical(name, label, values, valueLabels, role);
}

int MCVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<double>& values, IMCVariable::VariableRole role) {
  return store_->AddCategorical(name, label, values, {}, role);
}

int MCVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<std::string>& values,
                         const std::vector<std::string>& valueLabels,
                         IMCVariable::VariableRole role) {
  if (valueLabels.size() != values.size()) return kRefused;
  return store_->AddCategorical(name, label, values, valueLabels, role);
}

int MCVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<std::string>& values, IMCVariable::VariableRole role) {
  return store_->AddCategorical(name, label, values, {}, role);
}

int MCVarList::AddContVar(const std::string& name, const std::string& label,
                          IMCVariable::VariableRole role) {
  if (!store_->Accepts(name)) return kRefused;
  return store_->Add(MCVariable(name, label, role));
}

int MCVarList::AddContVar(const std::string& name, const std::string& label, double minimum,
                          double maximum, IMCVariable::VariableRole role, bool rangeFlag,
                          int rangeCount) {
  return store_->AddRanged(name, label, {minimum, maximum, rangeFlag, rangeCount, {}, false}, role);
}

int MCVarList::AddContVar(const std::string& name, const std::string& label, double minimum,
                          double maximum, const std::vector<double>& cutPoints, bool binned,
                          IMCVariable::VariableRole role) {
  constexpr int kNoCount = -1;
  return store_->AddRanged(name, label, {minimum, maximum, false, kNoCount, cutPoints, binned},
                           role);
}

int MCVarList::SetWeightVar(const std::string& name, const std::string& label,
                            IMCVariable::WRoundingOption rounding) {
  if (store_->weightIndex != kNoWeight || !store_->Accepts(name)) return kRefused;
  store_->weightIndex = store_->Add(MCVariable(name, label, rounding));
  return store_->weightIndex;
}

unsigned int MCVarList::Size() const { return static_cast<unsigned int>(store_->entries.size()); }

IMCVariable* MCVarList::GetVarAt(int index) {
  Entry* entry = store_->At(index);
  return entry != nullptr ? &entry->variable : nullptr;
}

const IMCVariable* MCVarList::GetVarAt(int index) const { return GetStoredVar(index); }

IMCVarEncoder* MCVarList::GetEncoderAt(int index) {
  Entry* entry = store_->At(index);
  return entry != nullptr ? &entry->encoder : nullptr;
}

const MCVariable* MCVarList::GetStoredVar(int index) const {
  const Entry* entry = store_->At(index);
  return entry != nullptr ? &entry->variable : nullptr;
}

const MCVarEncoder* MCVarList::GetStoredEncoder(int index) const {
  const Entry* entry = store_->At(index);
  return entry != nullptr ? &entry->encoder : nullptr;
}

int MCVarList::FindVar(const std::string& name) const {
  const auto found = store_->indexOfName.find(name);
  return found != store_->indexOfName.end() ? found->second : -1;
}

}  // namespace MCMTD_NAMESPACE
