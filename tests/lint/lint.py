#!/usr/bin/env python3
"""Checks the rules of the tree: lint.py [RULE...] checks all or some, lint.py --list names them."""
import argparse
import os
import pathlib
import subprocess
import sys

import rules


class Tree:
    """The files of a source tree, as text."""

    def __init__(self, root):
        self.root = pathlib.Path(root)
        self._texts = {}
        self._paths = sorted(p for p in self._listed() if (self.root / p).is_file())

    def _listed(self):
        """What git tracks or would track; in a tree without git every file outside of build folders."""
        if (self.root / ".git").exists():
            done = subprocess.run(
                ["git", "-c", "safe.directory=*", "ls-files", "-z", "--cached", "--others",
                 "--exclude-standard"], cwd=self.root, capture_output=True, check=True)
            return set(os.fsdecode(done.stdout).split("\0")) - {""}
        found = []
        for folder, folders, files in os.walk(self.root):
            folders[:] = [f for f in folders if not f.startswith("build") and f != "__pycache__"]
            found += [(pathlib.Path(folder) / f).relative_to(self.root).as_posix() for f in files]
        return set(found)

    def files(self, *endings):
        """Paths of the text files with one of the endings; the ending "" means a name without any."""
        for path in self._paths:
            name = path.rsplit("/", 1)[-1]
            ending = os.path.splitext(name)[1]
            if (not endings or ending in endings or name in endings) and self.text(path) is not None:
                yield path

    def text(self, path):
        """The file's text with its line ends as they are, or None if it is no text."""
        if path not in self._texts:
            data = (self.root / path).read_bytes()
            self._texts[path] = None if b"\0" in data else data.decode("utf-8", "replace")
        return self._texts[path]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("rules", nargs="*", metavar="RULE", help="of --list; all if none is given")
    parser.add_argument("--list", action="store_true", help="name the rules")
    parser.add_argument("--root", default=pathlib.Path(__file__).resolve().parents[2],
                        help="the tree (default: the one this file stands in)")
    arguments = parser.parse_args()
    if arguments.list:
        print("\n".join(rules.RULES))
        return 0
    unknown = [name for name in arguments.rules if name not in rules.RULES]
    if unknown:
        parser.error("no such rule: " + ", ".join(unknown))

    tree = Tree(arguments.root)
    if not any(tree.files(".cpp")):
        print("no source files found under", tree.root)
        return 1
    findings = 0
    for name in arguments.rules or rules.RULES:
        for finding in rules.RULES[name](tree):
            print(f"{finding}  [{name}]")
            findings += 1
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
