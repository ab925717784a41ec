// The "extender" of the PMML extensions that this family of programs writes and reads.
#ifndef MCXPRSUTIL_XML_VENDOREXTENDER_H
#define MCXPRSUTIL_XML_VENDOREXTENDER_H

namespace MCXPrsUtil {

constexpr char kVendorExtender[] = "TULK";

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_VENDOREXTENDER_H
