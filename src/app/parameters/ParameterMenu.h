// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the other button opens on a parameter of a plug-in, in panels and on the page alike. User-interface thread.

#include <functional>

class QWidget;

namespace quib {

class CPanelValues;
class CParameterMarks;

// `showLane`: unset where there is nowhere to show it.
void ShowParameterMenu(QWidget& window, CPanelValues& values, CParameterMarks& marks, int parameter,
                       const std::function<void(int parameter)>& showLane);

// Asks for a value in the plug-in's words.
void TypeParameter(QWidget& window, CPanelValues& values, int parameter);

// To its default, as one step of undo.
void ResetParameter(CPanelValues& values, int parameter);

}  // namespace quib
