// Long texts: the vector paths, the way into them and out of them, against the reference.

#include <random>

#include "encoding/UnicodeFormsCheck.h"

namespace encoding_test {
namespace {

using namespace MCMEM_NAMESPACE;

constexpr int kRounds = kThorough ? 3000 : 150;

// Far enough from the end of a page for vectors that may read on behind the zero that ends a text.
constexpr std::size_t kFarFromPageEnd = 80;

using Random = std::mt19937;
unsigned int Below(Random& random, unsigned int limit) {
  return static_cast<unsigned int>(random()) % limit;
}

// A character of a script: 0 ASCII, 1 two bytes, 2 three bytes, 3 four bytes.
unsigned int Draw(Random& random, unsigned int script) {
  if (script == 0) return 1 + Below(random, 0x7F);
  if (script == 1) return 0x80 + Below(random, 0x780);
  if (script == 2) {
    const unsigned int value = 0x800 + Below(random, 0xF800 - 0x800);
    return value < 0xD800 ? value : value + 0x800;
  }
  return 0x10000 + Below(random, 0x100000);
}

// Characters of mostly one script, now and then changing; sometimes all mixed.
Units RandomText(Random& random, std::size_t characters) {
  const unsigned int change = 1 + Below(random, 40);
  unsigned int script = Below(random, 4);
  Units text;
  while (text.size() < characters) {
    if (Below(random, change) == 0) script = Below(random, 4);
    text.push_back(Draw(random, Below(random, 9) == 0 ? 0 : script));
  }
  return text;
}

template <class Conversion>
Units Encode(const Units& text) {
  Units units;
  for (const unsigned int value : text) {
    Units one = {value};
    if (sizeof(typename Conversion::From::Unit) == 1) one = reference::Utf8Of(value);
    if (sizeof(typename Conversion::From::Unit) == 2) one = reference::Utf16Of(value);
    units.insert(units.end(), one.begin(), one.end());
  }
  return units;
}

template <class Conversion>
unsigned int RandomUnit(Random& random) {
  constexpr unsigned int kMasks[] = {0, 0xFF, 0xFFFF, 0, 0x1FFFFF};
  const unsigned int unit = static_cast<unsigned int>(random());
  return unit & kMasks[sizeof(typename Conversion::From::Unit)];
}

template <class Conversion>
class UnicodeForms_Mixed : public testing::Test {
 public:
  void CheckBoth(const Units& source, std::size_t capacity, std::size_t shift) {
    for (const auto flags : kBothFlags) ASSERT_TRUE(checker_.Same(source, capacity, flags, shift));
  }

  // In ample room, and in a room that is too small at a random place.
  void Check(const Units& source, Random& random) {
    const std::size_t shift = Below(random, 4) + Below(random, 2) * kFarFromPageEnd;
    CheckBoth(source, checker_.AmpleFor(source), shift);
    const auto exact = static_cast<unsigned int>(checker_.Expected().written.size());
    CheckBoth(source, exact, shift);
    CheckBoth(source, Below(random, exact + 1), shift);
  }

  Checker<Conversion> checker_;
  Random random_{20240301};
};

using All = testing::Types<Utf8To16, Utf8To16Rev, Utf8To32, Utf16To8, Utf16RevTo8, Utf16To32,
                           Utf32To8, Utf32To16>;
TYPED_TEST_SUITE(UnicodeForms_Mixed, All, ConversionName);

TYPED_TEST(UnicodeForms_Mixed, CleanTextsFollowTheReference) {
  for (int round = 0; round < kRounds; ++round) {
    const Units text = RandomText(this->random_, Below(this->random_, 150));
    this->Check(Encode<TypeParam>(text), this->random_);
    if (this->HasFatalFailure()) return;
  }
}

TYPED_TEST(UnicodeForms_Mixed, OneForeignUnitAnywhereFollowsTheReference) {
  for (int round = 0; round < kRounds; ++round) {
    Units source = Encode<TypeParam>(RandomText(this->random_, 1 + Below(this->random_, 120)));
    const auto size = static_cast<unsigned int>(source.size());
    source[Below(this->random_, size)] = RandomUnit<TypeParam>(this->random_);
    this->Check(source, this->random_);
    if (this->HasFatalFailure()) return;
  }
}

TYPED_TEST(UnicodeForms_Mixed, ATextCutAnywhereFollowsTheReference) {
  for (int round = 0; round < kRounds; ++round) {
    Units source = Encode<TypeParam>(RandomText(this->random_, 1 + Below(this->random_, 120)));
    source.resize(Below(this->random_, static_cast<unsigned int>(source.size())));
    this->Check(source, this->random_);
    if (this->HasFatalFailure()) return;
  }
}

TYPED_TEST(UnicodeForms_Mixed, NoiseFollowsTheReference) {
  for (int round = 0; round < kRounds; ++round) {
    Units source(Below(this->random_, 60));
    for (unsigned int& unit : source) unit = RandomUnit<TypeParam>(this->random_);
    this->Check(source, this->random_);
    if (this->HasFatalFailure()) return;
  }
}

// A text of one kind of character with one other unit at every offset: every place of every block.
TYPED_TEST(UnicodeForms_Mixed, OneOddUnitAtEveryOffsetFollowsTheReference) {
  const unsigned int kinds[] = {0x41, 0xE9, 0x4E2D, 0x1F600};
  const unsigned int odd[] = {0x00, 0x41, 0x80, 0xC0,   0xC3,   0xE4,    0xED,
                              0xF0, 0xF5, 0xFF, 0xD83D, 0xDE00, 0x110000};
  for (const unsigned int kind : kinds) {
    const Units text = Encode<TypeParam>(Units(kThorough || kind < 0x80 ? 40 : 20, kind));
    for (const unsigned int unit : odd) {
      if (unit >> (8 * sizeof(typename TypeParam::From::Unit) - 1) > 1) continue;
      for (std::size_t i = 0; i < text.size(); ++i) {
        Units source = text;
        source[i] = unit;
        this->CheckBoth(source, this->checker_.AmpleFor(source), i % 3);
        this->CheckBoth(source, this->checker_.AmpleFor(source), i % 3 + kFarFromPageEnd);
        if (this->HasFatalFailure()) return;
      }
    }
  }
}

// ASCII up to some lines, plain and with one other unit anywhere, in rooms that are just large
// enough or a unit too small.
TYPED_TEST(UnicodeForms_Mixed, LinesOfEveryLengthFollowTheReference) {
  for (std::size_t length = 1; length <= 70; length += kThorough ? 1 : 3) {
    Units line;
    for (std::size_t i = 0; i < length; ++i) line.push_back(0x20 + static_cast<unsigned>(i));
    for (const std::size_t shift : {std::size_t{0}, length % 4 + kFarFromPageEnd}) {
      this->CheckBoth(line, length, shift);
      this->CheckBoth(line, length - 1, shift);
      for (const unsigned int odd : {0x00u, 0x80u, 0xFFu}) {
        for (std::size_t i = 0; i < length; ++i) {
          Units source = line;
          source[i] = odd;
          this->CheckBoth(source, 2 * length, shift);
        }
      }
      if (this->HasFatalFailure()) return;
    }
  }
}

// Accents with every distance to the next, so that every mask of a block occurs.
TYPED_TEST(UnicodeForms_Mixed, EveryPatternOfAccentsFollowsTheReference) {
  for (unsigned int pattern = 0; pattern < 0x10000; pattern += kThorough ? 1 : 61) {
    Units text;
    for (unsigned int bit = 0; bit < 16; ++bit)
      text.push_back((pattern >> bit & 1) != 0 ? 0xC9 + bit : 0x61 + bit);
    text.insert(text.end(), text.begin(), text.begin() + 8);
    const Units source = Encode<TypeParam>(text);
    ASSERT_TRUE(this->checker_.Same(source, 80, strictConversion));
  }
}

TYPED_TEST(UnicodeForms_Mixed, EveryCapacityOfALongTextFollowsTheReference) {
  for (const unsigned int kind : {0x41u, 0xE9u, 0x4E2Du, 0x1F600u}) {
    const Units source = Encode<TypeParam>(Units(40, kind));
    for (std::size_t capacity = 0; capacity <= 161; ++capacity) {
      this->CheckBoth(source, capacity, capacity % 2);
      this->CheckBoth(source, capacity, capacity % 2 + kFarFromPageEnd);
    }
  }
}

}  // namespace
}  // namespace encoding_test
