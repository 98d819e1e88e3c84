// Marks the definitions that leave the library; everything else is hidden by the compiler's default.
#pragma once

#define NXL_EXPORT __attribute__((visibility("default")))
