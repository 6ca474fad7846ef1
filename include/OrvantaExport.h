// Symbol visibility of the shared library: everything is hidden but what carries ORVANTA_EXPORT.
#pragma once

#if defined(ORVANTA_STATIC)
#define ORVANTA_EXPORT
#elif defined(_WIN32)
#if defined(ORVANTA_BUILDING_LIBRARY)
#define ORVANTA_EXPORT __declspec(dllexport)
#else
#define ORVANTA_EXPORT __declspec(dllimport)
#endif
#else
#define ORVANTA_EXPORT __attribute__((visibility("default")))
#endif
