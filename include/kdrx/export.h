#pragma once

/// Marks what the host's libraries export to modules. On a class it covers its type information and virtual table too.
#define KDRX_API __attribute__((visibility("default")))
