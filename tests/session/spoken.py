# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screen reader finds: every control has a name and a role, values change by actions and by keys, and the
menus open by their letters. Fails with the first that is missing."""
import re
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

PATIENCE = 30  # seconds


def wait_for(what, ask):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            found = ask()
        except Exception:  # what is asked may be gone meanwhile
            found = None
        if found:
            return found
        time.sleep(0.1)
    sys.exit(f"not found: {what}")


def press(*keys):
    subprocess.run(["xdotool", "key", *keys], check=True)


def program():
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        child = desktop.get_child_at_index(index)
        if child is not None and child.get_name().lower().startswith("quib"):
            return child
    return None


def entries(node):
    yield node
    for index in range(node.get_child_count()):
        child = node.get_child_at_index(index)
        if child is not None:
            yield from entries(child)


def find(root, role, pattern):
    for entry in entries(root):
        if entry.get_role_name() == role and re.search(pattern, entry.get_name()):
            return entry
    return None


def focused_name(root):
    for entry in entries(root):
        if entry.get_state_set().contains(Atspi.StateType.FOCUSED) and entry.get_role_name() != "panel":
            return entry.get_name()
    return None


def main():
    app = wait_for("the program", program)
    wait_for("the greeting", lambda: find(app, "alert", "") or find(app, "dialog", "") or True)
    time.sleep(1)
    press("Escape")
    level = wait_for("a level", lambda: find(app, "slider", r"^Kick, Level, "))
    frame = level
    while frame.get_role_name() != "frame":
        frame = frame.get_parent()

    # No gap: what can be used has a name.
    roles = {"slider", "check box", "push button", "list item", "push button menu", "button menu", "list", "canvas",
             "entry", "text", "label", "static", "progress bar"}
    seen = [(entry.get_role_name(), entry.get_name()) for entry in entries(frame)]
    nameless = [role for role, name in seen if role in roles and not name]
    assert not nameless, nameless
    assert len(seen) > 300, len(seen)

    # An action of the reader changes the value, and the name tells it.
    before = level.get_name()
    value = level.get_value_iface().get_current_value() if level.get_value_iface() else None
    actions = [level.get_action_name(index).lower() for index in range(level.get_n_actions())]
    level.do_action(actions.index("increase"))
    wait_for("a louder level", lambda: level.get_name() != before)
    assert value is None or level.get_value_iface().get_current_value() > value

    # The keys alone: the arrow goes on with what has the focus, Tab moves it.
    after = level.get_name()
    press("Down")
    wait_for("the arrow's change", lambda: level.get_name() != after)
    press("Tab")
    wait_for("the focus elsewhere", lambda: (focused_name(frame) or level.get_name()) != level.get_name())
    press("alt+f")
    wait_for("the File menu", lambda: find(app, "menu item", "^New$").get_state_set().contains(Atspi.StateType.SHOWING))
    press("Escape", "Escape")
    press("F1")
    wait_for("the page of keys", lambda: find(app, "dialog", "Keyboard shortcuts"))
    print(f"{len(seen)} entries, {before!r}")


main()
