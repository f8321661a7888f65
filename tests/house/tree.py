"""The tree of sources as the house rules see it: paths with their text, and who includes whom."""
import os
import re
import subprocess

SOURCE_SUFFIXES = ('.h', '.cpp', '.c', '.inc')
# Where a quoted name is looked for, after the folder of the file that names it.
INCLUDE_ROOTS = (
    '',
    'core-agent/cpp-core/include',
    'core-agent/font-tool/lib',
    'plugins',
    'plugins/CrossPlatform/CrossPlugin',
    'plugins/CrossPlatform/CrossPlugin/MarquineExtension API',
    'tests',
)
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*"([^"]+)"', re.M)


class Tree:
    """Maps each source's path, relative to the top, to its text."""

    def __init__(self, texts):
        self.texts = texts

    @staticmethod
    def of_checkout(top):
        listed = subprocess.run(['git', '-C', top, 'ls-files', '-z', '--cached', '--others', '--exclude-standard'],
                                capture_output=True, check=False)
        if listed.returncode == 0:
            paths = listed.stdout.decode().split('\0')
        else:  # a copy without its history
            paths = [os.path.relpath(os.path.join(folder, name), top)
                     for folder, _, names in os.walk(top) for name in names if '/build' not in folder]
        texts = {}
        for path in sorted(p for p in paths if p.endswith(SOURCE_SUFFIXES)):
            full = os.path.join(top, path)
            if os.path.isfile(full):
                with open(full, encoding='utf-8') as file:
                    texts[path] = file.read()
        return Tree(texts)

    def resolve(self, includer, name):
        """The path of the file that this #include means, or None if the tree has no such file."""
        for root in (os.path.dirname(includer), *INCLUDE_ROOTS):
            path = os.path.normpath(os.path.join(root, name))
            if path in self.texts:
                return path
        return None

    def includes(self):
        """Every quoted #include as (includer, name, path or None)."""
        for path, text in self.texts.items():
            for name in INCLUDE.findall(text):
                yield path, name, self.resolve(path, name)


def without_comments_and_texts(text):
    """The same lines with comments, literals and preprocessor lines emptied, so that braces count."""
    pattern = re.compile(r'//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|(?<![0-9a-fA-F])\'(?:\\.|[^\'\\\n])+\''
                         r'|^[ \t]*#(?:[^\n]*\\\n)*[^\n]*', re.S | re.M)
    return pattern.sub(lambda match: '\n' * match.group().count('\n'), text)
