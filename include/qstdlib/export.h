/**
 * @file export.h
 * How a declaration crosses the boundary of the library: linkage, visibility, and pointers that are never null.
 */
#ifndef QSTDLIB_EXPORT_H
#define QSTDLIB_EXPORT_H

/** @def QSTD_BEGIN_DECLS
    Begins declarations with C linkage; QSTD_END_DECLS ends them. */
/** @def QSTD_END_DECLS
    Ends what QSTD_BEGIN_DECLS begins. */
#ifdef __cplusplus
#define QSTD_BEGIN_DECLS extern "C" {
#define QSTD_END_DECLS }
#else
#define QSTD_BEGIN_DECLS
#define QSTD_END_DECLS
#endif

/** Marks what the library exports; every other symbol stays inside. Windows users of the static library define
    QSTDLIB_STATIC. */
#if defined(_WIN32) && defined(QSTDLIB_BUILDING)
#define QSTD_API __declspec(dllexport)
#elif defined(_WIN32) && !defined(QSTDLIB_STATIC)
#define QSTD_API __declspec(dllimport)
#elif defined(__GNUC__)
#define QSTD_API __attribute__((visibility("default")))
#else
#define QSTD_API
#endif

/** @def QSTD_NONNULL_ARGS
    As QSTD_NONNULL, for the arguments of the given numbers only. */
/** Every pointer argument must be valid. The compiler may tell a caller who passes null; the library spends no
    instructions on it. */
#if defined(__GNUC__)
#define QSTD_NONNULL __attribute__((nonnull))
#define QSTD_NONNULL_ARGS(...) __attribute__((nonnull(__VA_ARGS__)))
#else
#define QSTD_NONNULL
#define QSTD_NONNULL_ARGS(...)
#endif

#endif
