#ifndef TQ_EXPORT_H
#define TQ_EXPORT_H

/// \file tq_export.h
/// The mark of what the shared library offers. Everything else stays hidden in it, so that names of
/// ours never meet names of the application.

#if defined(__GNUC__)
#define TQ_API __attribute__((visibility("default")))
/// The compiler checks the arguments against the printf format at position `text`.
#define TQ_PRINTF(text, first) __attribute__((__format__(__printf__, text, first)))
#else
#define TQ_API
#define TQ_PRINTF(text, first)
#endif

#endif
