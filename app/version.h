// The texts that the banner and the version resource share.
#pragma once

#define KX_VERSION "8.4.02" // NOLINT: joined with other literals
#define KX_DESCRIPTION "Deletes old files and subfolders that are left empty." // NOLINT: the same
#define KX_VERSION_NUMBERS 8, 4, 2, 0 // NOLINT: read by the resource compiler too
