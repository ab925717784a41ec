#include "mcxprsutil/MCDataModelParser.h"

#include "readers/datamodel/MCDataModelParserImp.h"

namespace MCXPrsUtil {

using MCCommon::MCStatus;
using MCMTD_NAMESPACE::MCVarList;

MCDataModelParser::MCDataModelParser()
    : implementation_(std::make_unique<MCDataModelParserImp>()) {}

MCDataModelParser::~MCDataModelParser() = default;

MCStatus MCDataModelParser::ParseToDOM(const std::string& text) {
  return implementation_->ParseToDOM(text);
}

MCStatus MCDataModelParser::FillVarList(MCVarList& list, bool inputRoleFlag, bool rangeFlag,
                                        int rangeCount) const {
  return implementation_->FillVarList(list, inputRoleFlag, rangeFlag, rangeCount);
}

MCStatus MCDataModelParser::GetStatus() const { return implementation_->GetStatus(); }

}  // namespace MCXPrsUtil
