// A project of its own that uses both installed libraries: it reads a PMML document into a variable
// list that it derived itself, combines the document with itself, and converts a name.
#include <mccommon/MCVarList.h>
#include <mcmem/ConverterRegistry.h>
#include <mcmem/ExtNameStr.h>
#include <mcmem/Transcoding.h>
#include <mcxprsutil/MCPMMLParser.h>
#include <mcxprsutil/MCXMLReadWrite.h>
#include <mcxprsutil/MCXSplitPMMLCombiner.h>
#include <mcxprsutil/Version.h>

#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

class CountingList : public MCMTD_NAMESPACE::MCVarList {
 public:
  int AddContVar(const std::string& name, const std::string& label,
                 MCMTD_NAMESPACE::IMCVariable::VariableRole role) override {
    ++count;
    return MCVarList::AddContVar(name, label, role);
  }
  using MCVarList::AddContVar;

  int count = 0;
};

class OwnParser : public MCXPrsUtil::MCPMMLParser {};

bool ReadsVariables(const char* path) {
  std::ifstream file(path);
  OwnParser parser;
  CountingList list;
  return parser.ParseToDOM(file).IsOK() && parser.FillVarList(list, {}, false).IsOK() &&
         list.count > 0;
}

bool Combines(const char* path) {
  MCXPrsUtil::MCXMLReadWrite platform;
  MCMTD_NAMESPACE::MCVarList splits;
  splits.AddCatVar("half", "", std::vector<std::string>{"a", "b"},
                   MCMTD_NAMESPACE::IMCVariable::VariableRole{});
  MCXPrsUtil::MCXSplitPMMLCombiner combiner(splits);
  return combiner.AddModel(path, {"a"}).IsOK() && combiner.AddModel(path, {"b"}).IsOK() &&
         combiner.GetNModels() == 2 && combiner.ExportMiningModel("").IsOK();
}

bool ConvertsText() {
  MCMEM_NAMESPACE::ExtNameStr name;
  name.SetU8("\xC3\xA9t\xC3\xA9");
  MCMEM_NAMESPACE::U16String units;
  return name.GetU16().size() == 3 && MCMEM_NAMESPACE::GetPreferredCvtName(1252) != nullptr &&
         MCMEM_NAMESPACE::TULKMBU8ToU16(units, name.GetU8()) == 0 && units == name.GetU16();
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 2) return 2;
  std::cout << "mcxprsutil " << MCXPRSUTIL_VERSION << '\n';
  return ReadsVariables(argv[1]) && Combines(argv[1]) && ConvertsText() ? 0 : 1;
}
