// Writing the combined document.
#include <utility>
#include <xercesc/dom/DOMDocument.hpp>

#include "combiner/CombinerState.h"
#include "mcxprsutil/MCXMLReadWrite.h"
#include "xml/XercesPtr.h"

namespace MCXPrsUtil {

using MCCommon::MCStatus;
using XERCES_CPP_NAMESPACE::DOMDocument;

MCStatus MCXSplitPMMLCombiner::ExportMiningModel(const std::string& path) {
  State& state = *state_;
  if (state.doc == nullptr) return state.status;
  // Released on every way out, also when the file cannot be opened and an exception passes.
  const XercesPtr<DOMDocument> document(std::exchange(state.doc, nullptr));
  state.data_dict = nullptr;
  state.mining_schema = nullptr;
  state.segmentation = nullptr;
  state.data_fields.ForgetNodes();
  state.mining_fields.MarkExported();
  state.findings.ForgetDocument();
  state.status = WriteDocToPMMLFile(document.get(), path);
  return state.status;
}

MCStatus MCXSplitPMMLCombiner::WriteDocToPMMLFile(const DOMDocument* d, const std::string& path) {
  if (d == nullptr || path.empty()) return MCStatus();
  const MCXMLReadWrite writer;
  return writer.WriteFromDOM(path, d);
}

}  // namespace MCXPrsUtil
