"""Who may include whom: the floors of the house, and no circles."""
import fnmatch
import re

PLUGIN = 'plugins/CrossPlatform/CrossPlugin/'
EXTENSION = PLUGIN + 'MarquineExtension API/'
PUBLISHED = ('agent/include/*', 'frameworks/*/include/*', 'host/include/*')
# The subjects of Identification that stand below the bridge; the rest of the folder stands above it.
RECORD_SUBJECTS = re.compile(re.escape(PLUGIN) + r'Identification/Font(Records|Keys|Names)\.')
# From the ground up. Two floors of one height stand beside each other and don't know each other.
PLUGIN_FLOORS = (
    ('services', 1, EXTENSION + 'Services/'),
    ('records', 2, None),
    ('bridge', 3, EXTENSION + 'Bridge/'),
    ('identification', 4, PLUGIN + 'Identification/'),
    ('tracking', 5, PLUGIN + 'Tracking/'),
    ('panel floor', 5, EXTENSION + 'Panel/'),
    ('readers', 6, PLUGIN + 'Readers/'),
    ('documents', 7, PLUGIN + 'Documents/'),
    ('host entry', 8, 'plugins/photoshop/'),
)
HEIGHT = {name: height for name, height, _ in PLUGIN_FLOORS}
# Two units that are one thing: a class and its private half, and a type that is defined through another and back.
ONE_THING = {
    'platform/ValueObject': 'platform/Value',
    'core-agent/cpp-core/GKVTree': 'core-agent/cpp-core/GValue',
}
CHECKERS = ('tests', 'benchmarks', 'fuzz')


def floor_of(path):
    """The floor or program that the file belongs to, or None if nobody has said where it stands."""
    if RECORD_SUBJECTS.match(path):
        return 'records'
    for name, _, folder in PLUGIN_FLOORS:
        if folder and path.startswith(folder):
            return name
    parts = path.split('/')
    if parts[0] == 'frameworks':
        return parts[1]
    if parts[0] in ('platform', 'core-agent', 'agent', 'host', 'docfonts') + CHECKERS:
        return parts[0]
    return None


def may_include(path, target):
    own, other = floor_of(path), floor_of(target)
    if own == other or own in CHECKERS:
        return True
    if other == 'platform':
        return True
    if own in ('platform', 'core-agent') or other in CHECKERS:
        return False
    if any(fnmatch.fnmatch(target, pattern) for pattern in PUBLISHED):
        return True
    if own == 'docfonts':
        return HEIGHT.get(other, 99) <= HEIGHT['readers']
    if own in HEIGHT:
        return other == 'core-agent' or HEIGHT.get(other, 99) < HEIGHT[own]
    return False


def includes_follow_the_floors(tree):
    for path in tree.texts:
        if floor_of(path) is None:
            yield f'{path}: no floor is told for this folder'
    for path, name, target in tree.includes():
        if target is None:
            yield f'{path}: "{name}" is no file of the tree; a library\'s header is named in angle brackets'
        elif floor_of(path) and floor_of(target) and not may_include(path, target):
            yield f'{path} ({floor_of(path)}) must not include {target} ({floor_of(target)})'


def unit_of(path):
    """A header and the source of its name are one unit, also where the core library keeps them in two folders."""
    unit = re.sub(r'\.\w+$', '', path).replace('cpp-core/include/', 'cpp-core/').replace('cpp-core/src/', 'cpp-core/')
    return ONE_THING.get(unit, unit)


def no_include_circles(tree):
    graph = {unit_of(path): set() for path in tree.texts}
    for path, _, target in tree.includes():
        if target and unit_of(target) != unit_of(path):
            graph[unit_of(path)].add(unit_of(target))
    finished, road = set(), []

    def walk(unit):
        road.append(unit)
        for below in sorted(graph[unit]):
            if below in road:
                yield 'a circle: ' + ' -> '.join(road[road.index(below):] + [below])
            elif below not in finished:
                yield from walk(below)
        road.pop()
        finished.add(unit)

    for unit in sorted(graph):
        if unit not in finished:
            yield from walk(unit)
