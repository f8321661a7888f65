"""Includes: the compiler refuses wrong ones, none gets around that, and none form a circle."""
import re

PLUGIN = 'plugins/CrossPlatform/CrossPlugin/'
EXTENSION = PLUGIN + 'MarquineExtension API/'
# A source of each floor, a header, and whether the build lets the source include it.
FLOORS = (
    ('platform/Clock.cpp', 'agent/include/AgentProtocol.h', False),
    ('core-agent/cpp-core/src/GString.cpp', 'Services/MarquineGlobals.h', False),
    (EXTENSION + 'Services/DiagnosticLog.cpp', 'Identification/FontKeys.h', False),
    (PLUGIN + 'Identification/FontRecords.cpp', 'Bridge/VPILoader.h', False),
    (EXTENSION + 'Bridge/VPILoader.cpp', 'Identification/FontMatching.h', False),
    (EXTENSION + 'Bridge/VPILoader.cpp', 'Identification/FontKeys.h', True),
    (PLUGIN + 'Identification/BestMatch.cpp', 'Tracking/FontActivationTracker.h', False),
    (PLUGIN + 'Tracking/FontActivationTracker.cpp', 'Panel/PanelManager.h', False),
    (EXTENSION + 'Panel/PanelManager.cpp', 'Tracking/FontActivationTracker.h', False),
    (PLUGIN + 'Readers/DocumentBytes.cpp', 'Documents/OneTrackedDocument.h', False),
    (PLUGIN + 'Documents/OneTrackedDocument.cpp', 'photoshop/PluginMain.h', False),
    ('plugins/photoshop/PluginMain.cpp', 'host/Suites.h', False),
    ('plugins/photoshop/PluginMain.cpp', 'host/include/HostSuites.h', True),
    ('agent/server/Agent.cpp', 'Bridge/VPILoader.h', False),
    ('agent/server/Agent.cpp', 'support/TempFolder.h', False),
    ('agent/store/IndexStore.cpp', 'agent/library/Scanner.h', False),
    ('agent/fonts/FontTable.cpp', 'agent/store/UserStore.h', False),
    ('agent/previews/Previews.cpp', 'agent/fonts/FontTable.h', False),
    ('agent/workers/Worker.cpp', 'agent/unpacking/UnpackMessages.h', False),
    ('agent/webfonts/WebFonts.cpp', 'agent/unpacking/FontUnpacker.h', False),
    ('agent/unpacking/FontUnpacker.cpp', 'agent/fonts/FontFile.h', False),
    ('agent/client/AgentConnection.cpp', 'agent/fonts/FontFile.h', False),
    ('host/console/AgentLink.cpp', 'agent/fonts/FontFile.h', False),
    ('host/console/AgentLink.cpp', 'agent/client/AgentConnection.h', True),
    ('host/panel/EventLink.cpp', 'host/console/Session.h', False),
    ('host/console/FontLister.cpp', 'docfonts/Report.h', False),
    ('host/console/FontLister.cpp', 'docfonts/include/ReadingTime.h', True),
    ('panelcat/Conversation.cpp', 'Panel/PanelKeys.h', False),
    ('docfonts/FontCollector.cpp', 'Readers/Document/DocumentReaders.h', True),
    ('docfonts/Resolver.cpp', 'Documents/OneTrackedDocument.h', False),
    ('with-fonts/FontHolder.cpp', 'photoshop/PluginMain.h', False),
    ('with-fonts/FontHolder.cpp', 'docfonts/Report.h', True),
    ('frameworks/PlugPlug/PlugPlug.cpp', 'frameworks/VelorantPlugins/Texts.h', False),
)
# Two units that count as one: a class and its private part, and two types that are defined by each other.
ONE_THING = {
    'platform/ValueObject': 'platform/Value',
    'core-agent/cpp-core/GKVTree': 'core-agent/cpp-core/GValue',
}
CHECKERS = ('tests/', 'benchmarks/', 'fuzz/')


def floors_are_refused(tree, compiler, floors=FLOORS):
    for source, header, allowed in floors:
        if source not in tree.texts or tree.resolve('', header) is None:
            yield f'{source} or {header} is gone; choose another'
        elif compiler.finds(source, header) != allowed:
            yield f'{source} {"cannot" if allowed else "can"} include {header}'


def includes_take_no_side_way(tree):
    """A path with ".." finds headers of other floors in the source tree, which the include path hides."""
    for path, name, _ in tree.includes():
        if '..' in name.split('/') and not path.startswith(CHECKERS):
            yield f'{path}: "{name}" leaves its folder; headers are named from the top of their floor'


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
