#pragma once

/// Marks what `libquor2d.so` exports; everything else is hidden.
#if defined(_WIN32)
#if defined(QUOR2D_STATIC)
#define QUOR2D_API
#elif defined(QUOR2D_BUILDING)
#define QUOR2D_API __declspec(dllexport)
#else
#define QUOR2D_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define QUOR2D_API __attribute__((visibility("default")))
#else
#define QUOR2D_API
#endif
