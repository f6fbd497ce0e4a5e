#pragma once

/// Marks what libqb_colorio exports; everything else is hidden.
#define COLORIO_API __attribute__((visibility("default")))
