"""A bad example for each rule, and a good one close to it."""
import os
import subprocess
import tempfile

import built
import includes
import sizes
from tree import Tree


def function_of(lines):
    return 'void Long() {\n' + '  Step();  // }\n' * (lines - 2) + '}\n'


# (rule, sources, what the one breach says; None: there is none)
TREES = [
    (includes.includes_take_no_side_way,
     {'platform/A.cpp': '#include "../agent/B.h"\n', 'agent/B.h': ''}, 'platform/A.cpp: "../agent/B.h" leaves'),
    (includes.includes_take_no_side_way, {'platform/A.cpp': '#include "platform/B..h"\n', 'platform/B..h': ''}, None),
    (includes.no_include_circles,
     {'agent/A.h': '', 'agent/A.cpp': '#include "agent/B.h"\n', 'agent/B.h': '', 'agent/B.cpp': '#include "agent/A.h"\n'},
     'a circle: agent/A -> agent/B -> agent/A'),
    (includes.no_include_circles,
     {'agent/A.h': '', 'agent/A.cpp': '#include "agent/A.h"\n#include "agent/B.h"\n', 'agent/B.h': '#include "agent/A.h"\n'},
     'a circle'),
    (includes.no_include_circles,
     {'agent/A.h': '', 'agent/A.cpp': '#include "agent/A.h"\n', 'agent/B.h': '#include "agent/A.h"\n'}, None),
    (sizes.files_and_functions_stay_small, {'agent/A.h': '\n' * (sizes.LONGEST_FILE + 1)}, 'lines; at most'),
    (sizes.files_and_functions_stay_small, {'agent/A.h': '\n' * sizes.LONGEST_FILE}, None),
    (sizes.files_and_functions_stay_small,
     {'agent/A.cpp': 'namespace n {\n' + function_of(sizes.LONGEST_FUNCTION + 1) + '}\n'}, 'agent/A.cpp:2: a function of'),
    (sizes.files_and_functions_stay_small,
     {'agent/A.cpp': 'struct S {\n  S() : a{1} {}\n' + function_of(sizes.LONGEST_FUNCTION) + '};\n'}, None),
    (sizes.files_and_functions_stay_small,
     {'agent/A.cpp': 'const Row kRows[] = {\n' + '  {f(1)},\n' * sizes.LONGEST_FUNCTION + '};\n'}, None),
    (sizes.files_and_functions_stay_small,
     {'agent/A.cpp': 'void F() {\n  const Row kRows[] = {\n' + '    {1, {2}},\n' * sizes.LONGEST_FUNCTION + '  };\n}\n'}, None),
    (sizes.files_and_functions_stay_small,
     {'agent/A.cpp': 'void F() {\n  const auto f = [] {\n' + '    Step();\n' * sizes.LONGEST_FUNCTION + '  };\n}\n'},
     'agent/A.cpp:1: a function of'),
]


def complaint_of(what, breaches, expected):
    breaches = list(breaches)
    if expected is None:
        return f'{what}: a good example is refused: {breaches}' if breaches else None
    held = len(breaches) == 1 and expected in breaches[0]
    return None if held else f'{what}: one breach with "{expected}" was to be found, but: {breaches}'


def of_headers(compiler, top):
    with tempfile.TemporaryDirectory() as folder:
        for name, text, expected in (('Bad.h', 'std::string Name();\n', 'Bad.h does not compile alone'),
                                     ('Twice.h', 'struct Twice {};\n', 'Twice.h does not compile alone'),
                                     ('Good.h', '#pragma once\n#include <string>\nstd::string Name();\n', None)):
            path = os.path.join(folder, name)
            with open(path, 'w', encoding='utf-8') as file:
                file.write(text)
            relative = os.path.relpath(path, top)
            yield complaint_of(name, built.headers_compile_alone(Tree({relative: text}), compiler), expected)


def of_exports(compiler):
    with tempfile.TemporaryDirectory() as folder:
        library, header = os.path.join(folder, 'library'), os.path.join(folder, 'List.h')
        with open(header, 'w', encoding='utf-8') as file:
            file.write('#define LIST(X) \\\n  X(Listed, int, (int a, int b)) \\\n  X(AlsoListed, int, ())\n')
        listed = compiler.names_of_list(header, 'LIST')
        for name, code, expected in (('a library with more', 'Listed,AlsoListed,More', 'exports More, which is not'),
                                     ('a library with less', 'Listed', 'does not export AlsoListed'),
                                     ('a library as listed', 'Listed,AlsoListed', None)):
            source = ''.join(f'extern "C" int {function}() {{ return 1; }}\n' for function in code.split(','))
            subprocess.run(compiler.command([]) + ['-shared', '-fPIC', '-x', 'c++', '-', '-o', library], input=source,
                           text=True, check=True)
            yield complaint_of(name, built.differences(library, built.exports_of(library), listed), expected)


def of_floors(compiler, tree):
    source, header, allowed = includes.FLOORS[0]
    yield complaint_of('a floor', includes.floors_are_refused(tree, compiler, [(source, header, not allowed)]),
                       f'{source} cannot include')


def rules_that_miss(build, top, tree):
    compiler = built.Compiler(build, top)
    yield from filter(None, of_floors(compiler, tree))
    for rule, sources, expected in TREES:
        yield from filter(None, [complaint_of(rule.__name__, rule(Tree(sources)), expected)])
    yield from filter(None, of_headers(compiler, top))
    yield from filter(None, of_exports(compiler))
