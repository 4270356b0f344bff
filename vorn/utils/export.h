// Symbols are hidden by default; what users of the library may link against is marked here.
#ifndef VORN_UTILS_EXPORT_H
#define VORN_UTILS_EXPORT_H

#if defined(__GNUC__) || defined(__clang__)
#define VORN_EXPORT __attribute__((visibility("default")))
#else
#define VORN_EXPORT
#endif

#endif
