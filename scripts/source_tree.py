"""What scripts/structure and scripts/architecture share: a tree of C and C++ sources with its includes, as a graph
of folders and as one of units, and the cycles of both. A unit is a header with the source beside it that has its
name."""

import collections
import dataclasses
import functools
import io
import os
import pathlib
import re
import subprocess
import tarfile

SUFFIXES = {".c", ".cpp", ".h", ".inc"}
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(["<])([^">]+)[">]', re.M)
COMMENT_OR_LITERAL = re.compile(r'//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:[^"\\\n]|\\.)*"'
                                # Not the mark between digits.
                                r"|(?<![0-9a-fA-F])'(?:[^'\\\n]|\\.)*'", re.S)


@dataclasses.dataclass(frozen=True)
class Arrow:
    """The first include that makes one node know another."""
    source: str
    line: int
    target: str

    def __str__(self):
        return f"{self.source}:{self.line} includes {self.target}"


def without_comments(text):
    """The text with its comments gone; line ends stay."""
    def hide(match):
        found = match.group(0)
        return "\n" * found.count("\n") if found.startswith("/") else found

    return COMMENT_OR_LITERAL.sub(hide, text)


def folder_of(path):
    return os.path.dirname(path) or "."


def unit_of(path):
    return os.path.splitext(path)[0]


class SourceTree:
    """Sources by their path from the root."""

    def __init__(self, texts):
        self.texts = dict(sorted(texts.items()))
        self._by_name = collections.defaultdict(list)
        for path in self.texts:
            self._by_name[os.path.basename(path)].append(path)

    @staticmethod
    def of_folder(folder):
        """What git tracks in the folder or would track; everything where it is no work tree."""
        listed = subprocess.run(
            ["git", "-C", str(folder), "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
            capture_output=True, text=True)
        root = pathlib.Path(folder)
        paths = ([root / name for name in listed.stdout.split("\0") if name] if listed.returncode == 0
                 else root.rglob("*"))
        return SourceTree({path.relative_to(root).as_posix(): path.read_text(errors="replace")
                           for path in paths if path.suffix in SUFFIXES and path.is_file()})

    @staticmethod
    def of_commit(commit):
        top = subprocess.run(["git", "rev-parse", "--show-toplevel"], capture_output=True, text=True, check=True)
        packed = subprocess.run(["git", "archive", "--format=tar", commit], cwd=top.stdout.rstrip("\n"),
                                capture_output=True, check=True).stdout
        with tarfile.open(fileobj=io.BytesIO(packed)) as archive:
            return SourceTree({member.name: archive.extractfile(member).read().decode(errors="replace")
                               for member in archive
                               if member.isfile() and os.path.splitext(member.name)[1] in SUFFIXES})

    @functools.cached_property
    def folders(self):
        """Paths by folder."""
        found = collections.defaultdict(list)
        for path in self.texts:
            found[folder_of(path)].append(path)
        return dict(found)

    def included(self, path, quote, name):
        """The file of the tree that an include of path means, or None: beside it, else the one whose path ends so
        and begins most like its own, as the folders lie that the compiler searches."""
        beside = os.path.normpath(os.path.join(folder_of(path), name))
        if quote == '"' and beside in self.texts:
            return beside
        candidates = [other for other in self._by_name[os.path.basename(name)] if f"/{other}".endswith(f"/{name}")]
        return max(candidates, key=lambda other: len(os.path.commonprefix([path, other])), default=None)

    @functools.cached_property
    def includes(self):
        """(file, line, included file) of every include that means a file of the tree."""
        found = []
        for path, text in self.texts.items():
            for match in INCLUDE.finditer(without_comments(text)):
                target = self.included(path, *match.groups())
                if target is not None:
                    found.append((path, text_line(match), target))
        return found

    def graph(self, node_of):
        """{node: {node that it includes: Arrow}}, a node being what node_of makes of a path."""
        arrows = collections.defaultdict(dict)
        for path in self.texts:
            arrows[node_of(path)]
        for path, line, target in self.includes:
            if node_of(path) != node_of(target):
                arrows[node_of(path)].setdefault(node_of(target), Arrow(path, line, target))
        return dict(arrows)


def text_line(match):
    """The number of the line on which the match ends."""
    return match.string.count("\n", 0, match.end()) + 1


def reached_from(graph, start):
    reached, waiting = set(), [start]
    while waiting:
        for target in graph.get(waiting.pop(), ()):
            if target not in reached:
                reached.add(target)
                waiting.append(target)
    return reached


def cycles(graph):
    """Groups of nodes that all reach each other, sorted."""
    reached = {node: reached_from(graph, node) for node in graph}
    groups = {tuple(sorted(other for other in reached[node] if node in reached[other]))
              for node in graph if node in reached[node]}
    return sorted(groups)
