// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The languages that the windows speak.

namespace quib {

enum class ELanguage { kEnglish, kFrench };

}  // namespace quib
