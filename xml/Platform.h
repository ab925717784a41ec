// The start and the stop of the XML platform.
#ifndef MCXPRSUTIL_XML_PLATFORM_H
#define MCXPRSUTIL_XML_PLATFORM_H

namespace MCXPrsUtil {

// The XML library counts its users without a lock. These two let one thread in at a time, so that
// objects of this library may be made and destroyed on any thread: AddModel() and the export make
// one each time. What an application calls itself, or another library, is not kept apart.

// Starts the platform, or counts one user more. Throws what the XML library throws; then there is
// nothing to stop.
void StartPlatform();

// For each start that succeeded.
void StopPlatform();

}  // namespace MCXPrsUtil

#endif  // MCXPRSUTIL_XML_PLATFORM_H
