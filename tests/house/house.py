#!/usr/bin/env python3
"""house.py RULE SOURCE BUILD - checks one rule of the house over the sources in SOURCE and what was built in BUILD.

Prints a line for each breach. Exit status 0 where there is none, 1 otherwise. The rule "examples" shows each of the
others a tree that breaks it, so that we know that it can fail."""
import os
import sys

import built
import examples
import includes
import sizes
from tree import Tree


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    rule, source, build = sys.argv[1], os.path.abspath(sys.argv[2]), os.path.abspath(sys.argv[3])
    tree = Tree.of_checkout(source)
    rules = {
        'floors': lambda: includes.floors_are_refused(tree, built.Compiler(build, source)),
        'ways': lambda: includes.includes_take_no_side_way(tree),
        'circles': lambda: includes.no_include_circles(tree),
        'sizes': lambda: sizes.files_and_functions_stay_small(tree),
        'headers': lambda: built.headers_compile_alone(tree, built.Compiler(build, source)),
        'exports': lambda: built.bundles_export_their_lists(built.Compiler(build, source), os.path.join(build, 'app')),
        'examples': lambda: examples.rules_that_miss(build, source, tree),
    }
    if rule not in rules:
        sys.exit(f'unknown rule "{rule}"; there are: ' + ', '.join(rules))
    if len(tree.texts) < 100:
        sys.exit(f'{source}: only {len(tree.texts)} sources were found; the rules would hold for want of any')
    breaches = list(rules[rule]())
    for breach in breaches:
        print(breach)
    sys.exit(1 if breaches else 0)


main()
