#pragma once

/// Marks what the host libraries export. A host built as libraries with hidden symbols needs it on every
/// class and function that the module calls.
#define HOST_API __attribute__((visibility("default")))
