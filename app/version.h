// The product's version: what the banner shows, and the version resource of the program.
#pragma once

#define KX_VERSION "8.4.02"           // NOLINT: joined with other literals
#define KX_VERSION_NUMBERS 8, 4, 2, 0 // NOLINT: read by the resource compiler too
