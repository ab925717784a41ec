/// @file
/// The macro that marks what libmccommonr exports; everything else in it is hidden.
#ifndef MCCOMMON_MCEXPORT_H
#define MCCOMMON_MCEXPORT_H

#define MCCOMMON_EXPORT __attribute__((visibility("default")))

#endif  // MCCOMMON_MCEXPORT_H
