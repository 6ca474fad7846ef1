// Symbol visibility of the camera library: everything is hidden but what carries ORVANTA_CAMERA_EXPORT.
#pragma once

#if defined(ORVANTA_STATIC)
#define ORVANTA_CAMERA_EXPORT
#elif defined(_WIN32)
#if defined(ORVANTA_BUILDING_CAMERA)
#define ORVANTA_CAMERA_EXPORT __declspec(dllexport)
#else
#define ORVANTA_CAMERA_EXPORT __declspec(dllimport)
#endif
#else
#define ORVANTA_CAMERA_EXPORT __attribute__((visibility("default")))
#endif
