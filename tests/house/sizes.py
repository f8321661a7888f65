"""How long a file and a function may be."""
import re

from tree import without_comments_and_texts

LONGEST_FILE = 500
LONGEST_FUNCTION = 50
# A long table is data: these files hold nothing else, and the lines of one in a function don't count.
TABLES = ('.inc',)

TYPE = re.compile(r'\b(class|struct|union|enum|namespace|extern)\b[^()]*$')


def functions_of(text):
    """Yields (first line, number of lines, head) of each function body that stands in no other function."""
    plain = without_comments_and_texts(text)
    stack, start, line, tables = [], 0, 1, 0
    for at, char in enumerate(plain):
        if char == '\n':
            line += 1
        elif char == '{' and (plain[at - 1].isalnum() or plain[at - 1] in '_>'):
            stack.append(('initialiser', line, ''))
        elif char == '{':
            head = plain[start:at].strip()
            inside = any(kind in ('function', 'table') for kind, _, _ in stack)
            if inside:
                kind = 'table' if head.endswith('=') else 'scope'
            else:
                holds = '(' in head and not TYPE.search(head) and not head.endswith(('=', ',', '('))
                kind = 'function' if holds else 'scope'
            stack.append((kind, line, head))
            tables = 0 if kind == 'function' else tables
            start = at + 1
        elif char == '}':
            kind, first, head = stack.pop() if stack else ('scope', line, '')
            if kind == 'table' and not any(outer == 'table' for outer, _, _ in stack):
                tables += line - first
            if kind == 'function':
                yield first, line - first + 1 - tables, ' '.join(head.split())
            if kind != 'initialiser':
                start = at + 1
        elif char == ';':
            start = at + 1


def files_and_functions_stay_small(tree):
    for path, text in tree.texts.items():
        if path.endswith(TABLES):
            continue
        lines = text.count('\n')
        if lines > LONGEST_FILE:
            yield f'{path}: {lines} lines; at most {LONGEST_FILE}'
        for first, length, head in functions_of(text):
            if length > LONGEST_FUNCTION:
                yield f'{path}:{first}: a function of {length} lines; at most {LONGEST_FUNCTION}: {head[-90:]}'
