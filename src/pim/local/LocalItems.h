// SPDX-License-Identifier: GPL-3.0-or-later
// The item collection of a local folder: Count/Item in the sorted order, and
// Find/FindNext over the filter, with a series expanded into its occurrences
// inside the filter's range when IncludeRecurrences is on.
#pragma once

#include "pim/Pim.h"

#include <memory>

namespace tsr::pim::local {

class LocalStore;

// A series without an end in the filter gives at most this many occurrences.
inline constexpr int kMaxOccurrences = 1000;

std::shared_ptr<Items> makeItems(const std::shared_ptr<LocalStore>& store, const QString& rel);

} // namespace tsr::pim::local
