// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The folders of loops and the loop players of a project. User-interface thread.

namespace quib {

class CWorkstation;

// Every loop player plays what its folders hold now.
void FollowLoopFolders(CWorkstation& document);

}  // namespace quib
