// The product's version, which the banner shows.
#pragma once

#define KX_VERSION "8.4.02" // NOLINT: joined with other literals
