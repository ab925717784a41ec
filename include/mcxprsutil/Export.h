/// @file
/// The macro that marks what libmcxprsutil exports; everything else in it is hidden.
#ifndef MCXPRSUTIL_EXPORT_H
#define MCXPRSUTIL_EXPORT_H

#define MCXPRSUTIL_EXPORT __attribute__((visibility("default")))

#endif  // MCXPRSUTIL_EXPORT_H
