#!/usr/bin/env python3
"""Fails when one of our static libraries depends on another of ours that it does not link.

    scripts/check-library-links.py <manifest>

The build writes the manifest: one line per static library, its fields separated by '|':
name, source folder, archive, and the names of the libraries of ours it links, directly or
through the libraries it links.  Two things are checked for every library:

- symbols: each symbol its archive leaves undefined that another of our archives defines
  must be defined by one of the libraries it links.  An archive is never linked on its own,
  so a missing link shows only in the programs that happen to link the other library first;
  this finds it in the library itself.
- headers: each of its sources includes project headers ("folder/File.h") only from its own
  folder and from the folders of the libraries it links, so that dependencies point one way.
"""

import os
import re
import subprocess
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)
SOURCE_SUFFIXES = ('.cpp', '.h')


class Library:
    def __init__(self, line):
        name, folder, archive, links = line.split('|')
        self.name = name
        self.folder = os.path.normpath(folder)
        self.archive = archive
        self.links = [link for link in links.split(',') if link and link != name]
        self.defined, self.strong, self.undefined = symbols(archive)


def symbols(archive):
    """The symbols an archive defines (all, and those defined strongly) and leaves undefined."""
    output = subprocess.run(['nm', '-g', '-P', archive], check=True, capture_output=True,
                            text=True).stdout
    defined, strong, undefined = set(), set(), set()
    for line in output.splitlines():
        fields = line.split()
        if len(fields) < 2 or len(fields[1]) != 1:
            continue  # the name of a member of the archive
        name, kind = fields[0], fields[1]
        if kind == 'U':
            undefined.add(name)
        else:
            defined.add(name)
            if kind in 'TDRB':
                strong.add(name)
    return defined, strong, undefined - defined


def demangled(name):
    result = subprocess.run(['c++filt', name], capture_output=True, text=True)
    return result.stdout.strip() or name


def symbol_problems(library, libraries):
    reachable = set()
    for link in library.links:
        reachable |= libraries[link].defined
    missing = library.undefined - reachable
    problems = []
    for other in libraries.values():
        if other is library or other.name in library.links:
            continue
        used = sorted(missing & other.strong)
        if used:
            problems.append(f'{library.name} uses {len(used)} symbol(s) of {other.name} without linking it, '
                            f'for example {demangled(used[0])}')
    return problems


def project_includes(folder):
    for directory, _, files in os.walk(folder):
        for file_name in sorted(files):
            if file_name.endswith(SOURCE_SUFFIXES):
                path = os.path.join(directory, file_name)
                with open(path, encoding='utf-8', errors='replace') as source:
                    for header in INCLUDE.findall(source.read()):
                        yield path, header


def header_problems(library, libraries, root):
    allowed = {library.folder} | {libraries[link].folder for link in library.links}
    folders = {other.folder for other in libraries.values()}
    problems = []
    for path, header in project_includes(library.folder):
        header_folder = os.path.normpath(os.path.join(root, os.path.dirname(header)))
        if '/' not in header or header_folder in allowed or header_folder not in folders:
            continue
        if any(header_folder.startswith(folder + os.sep) for folder in allowed):
            continue  # a folder inside one it may use, such as codepages/
        owner = next(other.name for other in libraries.values() if other.folder == header_folder)
        problems.append(f'{os.path.relpath(path, root)} includes "{header}" of {owner}, '
                        f'which {library.name} does not link')
    return problems


def main():
    if len(sys.argv) != 3:
        sys.exit('usage: check-library-links.py <manifest> <source root>')
    with open(sys.argv[1], encoding='utf-8') as manifest:
        entries = [Library(line.strip()) for line in manifest if line.strip()]
    root = os.path.normpath(sys.argv[2])
    libraries = {library.name: library for library in entries}
    problems = []
    for library in entries:
        unknown = [link for link in library.links if link not in libraries]
        if unknown:
            problems.append(f'{library.name} links {", ".join(unknown)}, which the manifest lacks')
            continue
        problems += symbol_problems(library, libraries)
        problems += header_problems(library, libraries, root)
    for problem in problems:
        print(problem)
    print(f'{len(entries)} libraries checked, {len(problems)} problem(s)')
    return 1 if problems else 0


if __name__ == '__main__':
    sys.exit(main())
