// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Saving a plug-in's state while it plays. Formats whose banks are whole states save them unheard anyway; where
// a bank is made by selecting one program after the other, the render thread would have to be kept out.
// Editing thread.

#include "model/plugin/CPlugin.h"

namespace quib {

// As CPlugin::SaveBank, but rendering goes on: of programs that are not selected it says what `last`, an image of
// this plug-in, has said. Without such an image they are walked once.
StateImage SaveBankUnheard(CPlugin& plugin, const StateImage& last);

}  // namespace quib
