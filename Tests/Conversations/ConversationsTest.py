"""ConversationsTest.py BUILD [TEST…]: whether the host answers every recorded request as it did
when it was recorded, byte for byte."""

import os
import subprocess
import sys
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
import conversations

# With a bus and a display of its own.
if "CONVERSATIONS_ON_DESKTOP" not in os.environ:
    os.environ["CONVERSATIONS_ON_DESKTOP"] = "private"
    with_desktop = conversations.PROJECT / "Scripts" / "with-desktop"
    os.execv(with_desktop, [with_desktop, "--private", sys.executable, *sys.argv])

BUILD = Path(sys.argv.pop(1))
TOOL = BUILD / "bin" / "appleevents"


def replay(conversation, host_of=None):
    command = [TOOL, "replay", "--timeout", "60", conversation.recording]
    command += ["--against", *conversations.host(BUILD, host_of or conversation)]
    return subprocess.run(command, capture_output=True, text=True, timeout=150)


def is_as_recorded(conversation):
    """Another release of the styles says other things, and is no fault of ours."""
    files = conversation.files()
    recorded = conversations.CHECKSUMS.read_text().splitlines()
    return not files or set(conversations.installed(files)) <= set(recorded)


def named(name):
    [conversation] = [each for each in conversations.ALL if each.name == name]
    return conversation


class Conversations(unittest.TestCase):
    def test_every_recording_has_its_conversation(self):
        found = {path.stem for path in conversations.HERE.glob("*.recording")}
        self.assertEqual(found, {each.name for each in conversations.ALL})

    def test_nothing_in_them_breaks_a_rule(self):
        for each in conversations.ALL:
            with self.subTest(each.name):
                command = [TOOL, "show", each.recording]
                finished = subprocess.run(command, capture_output=True, text=True)
                self.assertEqual(finished.returncode, 0, finished.stdout + finished.stderr)

    def test_every_request_is_answered_as_it_was_recorded(self):
        for each in conversations.ALL:
            with self.subTest(each.name):
                if not is_as_recorded(each):
                    self.skipTest(f"the style {each.style} is another than was recorded")
                finished = replay(each)
                self.assertEqual(finished.returncode, 0, finished.stdout + finished.stderr)
                self.assertRegex(finished.stdout, r"replayed: [12] requests, 0 answered")

    def test_another_answer_is_noticed(self):
        finished = replay(named("insert-two"), named("insert-one"))
        self.assertEqual(finished.returncode, 1, finished.stderr)
        self.assertIn(
            'citation (byte 0): was "{godel1931;turing1950}", is "turing1950"', finished.stdout
        )


if __name__ == "__main__":
    unittest.main()
