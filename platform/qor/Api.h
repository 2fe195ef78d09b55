#pragma once

/// Marks what a host may call: everything else in the libraries is hidden.
#define VORLEX_API __attribute__((visibility("default")))
