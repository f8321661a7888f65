"""Rules that need the compiler or what was built: headers that stand alone, and nothing exported beyond the lists."""
import concurrent.futures
import json
import os
import shlex
import shutil
import subprocess

# What each bundle exports: the functions of an X(name, ...) list and its header, or the one name of an entry.
EXPORTS = {
    'agent/VelorantPluginInterface.framework/VelorantPluginInterface':
        ('frameworks/VelorantPluginInterface/include/PluginInterface.h', 'PLUGIN_INTERFACE_FUNCTIONS'),
    'agent/PluginFiles/VelorantPlugins.framework/VelorantPlugins':
        ('frameworks/VelorantPlugins/include/UIFramework.h', 'UI_FRAMEWORK_FUNCTIONS'),
    'host/Frameworks/PlugPlug.framework/PlugPlug':
        ('frameworks/PlugPlug/include/PlugPlugEvents.h', 'PLUG_PLUG_FUNCTIONS'),
    'host/Plug-ins/AutoActivation.plugin/AutoActivation': (None, 'AutoPluginMain'),
}


class Compiler:
    """The build's own compiler, with the flags that the build gives to its sources."""

    def __init__(self, build, top):
        self.top = top
        self.build = build
        self.scratch = os.path.join(build, 'house')
        os.makedirs(self.scratch, exist_ok=True)
        self.flags = {}  # by source, relative to the top
        with open(os.path.join(build, 'compile_commands.json'), encoding='utf-8') as file:
            for entry in json.load(file):
                words = shlex.split(entry['command'])
                self.program = next(word for word in words if word.endswith('++'))
                self.flags[os.path.relpath(entry['file'], top)] = self.flags_of(words)
        self.all_flags = list(dict.fromkeys(flag for flags in self.flags.values() for flag in flags))

    @staticmethod
    def flags_of(words):
        """Folders of headers and definitions, each with its option as one word."""
        system = ['-isystem' + words[at + 1] for at, word in enumerate(words) if word == '-isystem']
        return [word for word in words if word.startswith(('-I', '-D'))] + system

    def command(self, flags):
        return [self.program, '-std=c++20', '-Wall', '-Wextra', '-Werror', '-Wno-unused-parameter', *flags]

    def flags_for(self, header):
        """Those of the source that is nearest to the header; tests include what each of them links."""
        if header.startswith(('tests/', 'fuzz/', 'benchmarks/')):
            return self.all_flags
        stem = os.path.splitext(header)[0]
        return self.flags[max(self.flags, key=lambda path: len(os.path.commonprefix([path, stem])))]

    def errors_of(self, header):
        """What the compiler says to a source that includes this header, twice, and nothing else."""
        name = os.path.join(self.scratch, header.replace('/', '_').replace(' ', '_'))
        source = f'#include "{os.path.join(self.top, header)}"\n' * 2
        if not os.path.exists(name + '.cpp') or open(name + '.cpp', encoding='utf-8').read() != source:
            with open(name + '.cpp', 'w', encoding='utf-8') as file:
                file.write(source)
        cache = ['ccache'] if shutil.which('ccache') else []
        run = subprocess.run(cache + self.command(self.flags_for(header)) + ['-c', name + '.cpp', '-o', name + '.o'],
                             capture_output=True, text=True, check=False)
        lines = [line for line in run.stderr.splitlines() if 'error' in line] or run.stderr.splitlines()
        return lines[0] if run.returncode else ''

    def finds(self, source, header):
        """Whether the source could include the header."""
        code = f'#if !__has_include("{header}")\n#error\n#endif\n'
        run = subprocess.run(self.command(self.flags[source]) + ['-E', '-x', 'c++', '-'], input=code, cwd=self.scratch,
                             capture_output=True, text=True, check=False)
        return run.returncode == 0

    def names_of_list(self, header, macro):
        """The first argument of each X of the list."""
        source = f'#include "{os.path.join(self.top, header)}"\n#define NAME_OF(name, ...) EXPORTED name\n{macro}(NAME_OF)\n'
        run = subprocess.run(self.command(self.flags_for(header)) + ['-E', '-P', '-x', 'c++', '-'], input=source,
                             capture_output=True, text=True, check=True)
        words = run.stdout.split()
        return {words[at + 1] for at, word in enumerate(words) if word == 'EXPORTED'}


def headers_compile_alone(tree, compiler):
    headers = [path for path in tree.texts if path.endswith('.h')]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for header, error in zip(headers, pool.map(compiler.errors_of, headers)):
            if error:
                yield f'{header} does not compile alone: {error}'


def exports_of(path):
    run = subprocess.run(['nm', '-D', '--defined-only', '--format=posix', path], capture_output=True, text=True, check=True)
    return {line.split()[0].split('@')[0] for line in run.stdout.splitlines() if line}


def differences(path, exported, listed):
    for name in sorted(exported - listed):
        yield f'{path} exports {name}, which is not in its list'
    for name in sorted(listed - exported):
        yield f'{path} does not export {name}, which is in its list'


def bundles_export_their_lists(compiler, app):
    for bundle, (header, name) in EXPORTS.items():
        path = os.path.join(app, bundle)
        if not os.path.exists(path):
            yield f'{path} was not built'
            continue
        yield from differences(path, exports_of(path), compiler.names_of_list(header, name) if header else {name})
