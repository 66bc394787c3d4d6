// The lines that the library writes to the system log.
//
// Each source file states the module that its lines name, once:
//
//     constexpr char kLogModule[] = "zor_status";
//
// The message stands at its call, letter for letter, because log watchers match
// it. Only functions that the interface or a log line names report failures;
// helpers return a value and leave errno as the failing call set it, for "%m".
#pragma once

#include "zor_filelock.h"

#define ZOR_LOG_LINE(priority, level, function, message, ...)                       \
    __zorlog(priority, "[ZOR-%s] %s:%d(%s): " message, level, kLogModule, __LINE__, \
             function __VA_OPT__(, ) __VA_ARGS__)

#define ZOR_ERROR(message, ...) ZOR_ERROR_OF(__func__, message __VA_OPT__(, ) __VA_ARGS__)

#define ZOR_NOTICE(message, ...) ZOR_NOTICE_OF(__func__, message __VA_OPT__(, ) __VA_ARGS__)

// For a step of a reporting function that stands in a function of its own.
#define ZOR_ERROR_OF(function, message, ...) \
    ZOR_LOG_LINE(ZOR_LOG_ERROR, "ERROR", function, message __VA_OPT__(, ) __VA_ARGS__)

#define ZOR_NOTICE_OF(function, message, ...) \
    ZOR_LOG_LINE(ZOR_LOG_NOTICE, "NOTICE", function, message __VA_OPT__(, ) __VA_ARGS__)
