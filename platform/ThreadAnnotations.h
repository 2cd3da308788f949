/// Names for clang's thread-safety attributes, which gcc does not know. The only macros of the tree
/// (docs/decisions/0002-thread-annotations.md).
#pragma once

#if defined(__clang__)
#define ZUPM_CAPABILITY(name) __attribute__((capability(name)))
#define ZUPM_SCOPED_CAPABILITY __attribute__((scoped_lockable))
#define ZUPM_GUARDED_BY(lock) __attribute__((guarded_by(lock)))
#define ZUPM_REQUIRES(lock) __attribute__((requires_capability(lock)))
#define ZUPM_ACQUIRE(...) __attribute__((acquire_capability(__VA_ARGS__)))
#define ZUPM_RELEASE(...) __attribute__((release_capability(__VA_ARGS__)))
#else
#define ZUPM_CAPABILITY(name)
#define ZUPM_SCOPED_CAPABILITY
#define ZUPM_GUARDED_BY(lock)
#define ZUPM_REQUIRES(lock)
#define ZUPM_ACQUIRE(...)
#define ZUPM_RELEASE(...)
#endif
