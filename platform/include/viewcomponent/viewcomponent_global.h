#pragma once

#if defined(__GNUC__)
#define VIEWCOMPONENT_EXPORT __attribute__((visibility("default")))
#else
#define VIEWCOMPONENT_EXPORT
#endif
