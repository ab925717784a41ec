// Reads the description of a settings document.
#ifndef MCX_EXAMPLES_SETTINGSDESCRIPTION_H
#define MCX_EXAMPLES_SETTINGSDESCRIPTION_H

#include <string>

#include "DocumentDescription.h"

namespace examples {

// Adds the parameters, roles, variables and derived variables of the settings in `text`, the whole
// document. A parameter that cannot be read as its type says is shown as text and becomes a
// problem; variables behind one that cannot be read are lost.
void DescribeSettings(const std::string& text, const DescribeOptions& options,
                      DocumentDescription& description);

}  // namespace examples

#endif  // MCX_EXAMPLES_SETTINGSDESCRIPTION_H
