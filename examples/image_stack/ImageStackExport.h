#pragma once

/// Visible to other libraries and programs.
#define IMAGE_STACK_EXPORT __attribute__((visibility("default")))
