"""Pictures of the manual, rendered by the effect while the manual is built, and the reference of the controls.

Four directives:

  .. strip:: Ratio Size #         the strip of a control, as manual/strips.json has it
  .. controls:: Dot Shape, ...    a section for each of these controls: name, help, range, default and strip
  .. pictures::                   a strip of its own, a line a picture: "label :: options of the command line"; another
                                  ground's name may stand before the options, and ";;" parts those of stacked effects
  .. looks:: presets              a section for each preset (or each of the recipes): what it says of itself, two pictures of
                                  docs/make-gallery, its command and its settings

A picture is drawn by the command that stands beside it, in the folder of grounds. It is drawn once for each build of the
module and the program and kept in a cache; what a build draws otherwise than the last one is told at the end.
"""
import hashlib
import json
import os
import re
import shlex
import shutil
import subprocess
import tempfile
from html import escape
from pathlib import Path

from docutils import nodes
from docutils.parsers.rst import Directive, directives
from PIL import Image
from sphinx.errors import ExtensionError
from sphinx.util import logging

log = logging.getLogger(__name__)
here = Path(__file__).resolve().parent.parent
tree = here.parent
grounds = here / 'grounds'

# What many strips of effectors begin with; "#" is the effector.
openings = {
    'grow': ['Dot Size=5', 'Dot Distance X=9', 'Dot Distance Y=9', 'Enable Effector #=on', 'Size #=80', 'Offset Size #=8'],
    'near': ['Dot Size=9', 'Dot Distance X=5', 'Dot Distance Y=5', 'Enable Effector #=on', 'Size #=90'],
}


def program():
    return Path(os.environ['VINDREL_PROGRAM']).resolve()


def read_json(name):
    with open(here / name, encoding='utf-8') as file:
        return json.load(file)


def digest(*parts):
    value = hashlib.sha256()
    for part in parts:
        value.update(part if isinstance(part, bytes) else str(part).encode())
        value.update(b'\0')
    return value.hexdigest()


def build_digest():
    """Of everything that a picture of the manual may depend on but its own command."""
    module = program().parent / 'Vindrel.so'
    ground_bytes = b''.join(path.read_bytes() for path in sorted(grounds.glob('*.png')))
    return digest(program().read_bytes(), module.read_bytes(), ground_bytes)


class Facts:
    """The controls as the module declares them, with the help of controls.json."""

    def __init__(self):
        listed = subprocess.run([program(), 'controls', '--json'], check=True, capture_output=True, text=True).stdout
        self.rows = [row for row in json.loads(listed) if row['kind'] != 'end of group']
        self.byName = {row['name']: row for row in self.rows}
        self.help = {entry['name']: entry for entry in read_json('controls.json')['controls']}
        self.strips = read_json('strips.json')

    def row(self, pattern):
        name = pattern.replace('#', '1')
        # The groups of the effectors are called without a blank.
        row = self.byName.get(name) or self.byName.get(name.replace('Effector 1', 'Effector1'))
        if row is None:
            raise ExtensionError(f'the module has no control "{name}"')
        return row


def slug(text):
    return re.sub(r'[^a-z0-9]+', '-', text.lower()).strip('-')


def plain_number(value, row):
    text = f'{value:g}'
    if row['kind'] == 'angle':
        return text + '°'
    return text + ' %' if row.get('percent') else text


def shown_default(row):
    value = row['default']
    if row['kind'] == 'choice':
        return row['choices'][value - 1]
    if row['kind'] == 'check box':
        return 'on' if value else 'off'
    if row['kind'] == 'layer':
        return {'none': 'no layer', 'source': 'the layer itself'}[value]
    return plain_number(value, row) if isinstance(value, (int, float)) else str(value)


def shown_value(text, row):
    """A value of a strip as a label tells it: with the sign that the host shows behind it."""
    if row['kind'] in ('number', 'angle') and re.fullmatch(r'-?[0-9.]+', text):
        return plain_number(float(text), row)
    return text


class Picture:
    """One picture: its name, its label, and the options that draw it; more than one list when effects are stacked."""

    def __init__(self, name, label, ground, *passes):
        self.name, self.label, self.ground, self.passes = name, label, ground, passes

    def lines(self):
        """What each pass reads and writes, and its options."""
        read = self.ground
        for number, options in enumerate(self.passes, 1):
            write = 'out.png' if number == len(self.passes) else f'step-{number}.png'
            yield read, write, options
            read = write

    def command(self):
        def quoted(option):
            return option if re.fullmatch(r'[\w./-]+', option) else '"' + option + '"'
        return '\n'.join(' '.join(['vindrel', 'render', read, write, *map(quoted, options)])
                         for read, write, options in self.lines())


def set_options(sets, layers=()):
    options = []
    for value in sets:
        options += ['--set', value]
    for value in layers:
        options += ['--layer', value]
    return options


def strip_of(facts, pattern):
    """The pictures of a control's strip, and what all of them are drawn with."""
    entry = facts.strips.get(pattern)
    if entry is None:
        raise ExtensionError(f'strips.json has no strip of "{pattern}"')
    unknown = set(entry) - {'with', 'without', 'layers', 'ground', 'use', 'panels'}
    if unknown:
        raise ExtensionError(f'the strip of "{pattern}" has a word that means nothing: {", ".join(sorted(unknown))}')
    row = facts.row(pattern)
    opening = list(openings[entry['use']]) if 'use' in entry else []
    own = entry.get('with', [])
    overruled = {value.split('=')[0] for value in own} | {entry.get('without'), pattern}
    common = [value for value in opening if value.split('=')[0] not in overruled] + own
    common = [value.replace('#', '1', 1) if '#' in value.split('=')[0] else value for value in common]
    layers = [value.replace('#', '1', 1) for value in entry.get('layers', [])]
    ground = entry.get('ground', 'flat.png')
    panels = entry['panels']
    if panels == 'each':
        if row['kind'] == 'check box':
            panels = ['off', 'on']
        else:
            panels = [choice for choice in row['choices'] if choice != '(-']
    name = row['name']
    pictures = []
    for number, panel in enumerate(panels, 1):
        options = set_options(common, layers)
        if isinstance(panel, dict):
            own = [value.replace('#', '1', 1) if '#' in value.split('=')[0] else value for value in panel.get('set', [])]
            options += set_options(own)
            told = [value.replace('=', ' = ', 1) for value in own]
            if 'frame' in panel:
                options += ['--frame', str(panel['frame'])]
                told = told or [f'{name} = {shown_default(row)}']
                told.append(f'frame {panel["frame"]}')
            label = ', '.join(told) or 'all at their defaults'
        elif panel == '*':
            label = f'{name} = {shown_default(row)} (default)'
        else:
            options += ['--layer' if row['kind'] == 'layer' else '--set', f'{name}={panel}']
            label = f'{name} = {shown_value(panel, row)}'
            if shown_value(panel, row).lower() == shown_default(row).lower():
                label += ' (default)'
        pictures.append(Picture(f'{slug(name)}-{number}', label, ground, options))
    base = ', '.join(value.replace('=', ' = ', 1) for value in common + layers)
    return pictures, base


class Studio:
    """Draws pictures into the cache, and knows which file shows which picture."""

    def __init__(self, cache):
        self.cache = Path(cache)
        self.cache.mkdir(parents=True, exist_ok=True)
        self.build = build_digest()

    def draw(self, picture):
        key = digest(self.build, picture.command())[:32] + '.png'
        file = self.cache / key
        if not file.exists():
            with tempfile.TemporaryDirectory(dir=self.cache) as folder:
                for path in grounds.glob('*.png'):
                    os.symlink(path, Path(folder) / path.name)
                for read, write, options in picture.lines():
                    command = [program(), 'render', read, write, '--png-level', '9', *options]
                    done = subprocess.run(command, cwd=folder, capture_output=True, text=True)
                    # A strip may show what a list item does whose layer is missing; the program warns of it.
                    complaints = [line for line in done.stderr.splitlines() if not line.startswith('vindrel: warning:')]
                    if done.returncode or complaints:
                        raise ExtensionError(f'{picture.command()}\n{done.stderr}')
                Path(folder, 'out.png').rename(file)
        return key

    def look_keys(self, kind):
        """The keys of both pictures of each look of a kind, by its name."""
        maker = (tree / 'docs/make-gallery').read_bytes()
        return {file.stem: {part: digest(self.build, maker, file.read_bytes(), part)[:32] + '.jpg' for part in ('whole', 'part')}
                for file in sorted((tree / kind).glob('*.json'))}

    def draw_looks(self, kind):
        looks = self.look_keys(kind)
        lacking = [name for name, keys in looks.items() if not all((self.cache / key).exists() for key in keys.values())]
        if lacking:
            with tempfile.TemporaryDirectory(dir=self.cache) as folder:
                done = subprocess.run([tree / 'docs/make-gallery', '--pictures', folder, *lacking], capture_output=True, text=True,
                                      env={**os.environ, 'VINDREL': str(program())})
                if done.returncode:
                    raise ExtensionError(f'docs/make-gallery --pictures {folder}\n{done.stdout}{done.stderr}')
                for name in lacking:
                    for part, key in looks[name].items():
                        Path(folder, f'{name}-{part}.jpg').rename(self.cache / key)
        return looks

    def pixels(self, key):
        with Image.open(self.cache / key) as image:
            return digest(image.mode, image.size, image.tobytes())


class strip(nodes.General, nodes.Element):
    """A row of pictures, each with its settings."""


class look(nodes.General, nodes.Element):
    """The two pictures of a look."""


def add_strip(env, pictures, base, unlike=True):
    studio, shown = env.app.vindrel_studio, env.vindrel_shown.setdefault(env.docname, {})
    node = strip(base=base, pictures=[])
    seen = set()
    for picture in pictures:
        key = studio.draw(picture)
        if picture.name in shown:
            raise ExtensionError(f'two pictures of one page are called {picture.name}')
        shown[picture.name] = key
        seen.add(studio.pixels(key))
        with Image.open(studio.cache / key) as image:
            size = image.size
        node['pictures'].append((picture.name, picture.label, picture.ground, picture.command(), size))
    if unlike and len(pictures) > 1 and len(seen) == 1:
        raise ExtensionError(f'all pictures of the strip {pictures[0].name} are the same: it shows nothing')
    return node


def visit_strip(writer, node):
    up = '../' * writer.builder.current_docname.count('/')
    write = writer.body.append
    write('<div class="strip">\n')
    if node['base']:
        write(f'<p class="strip-base">With {escape(node["base"])}</p>\n')
    for name, label, ground, command, (width, height) in node['pictures']:
        write(f'<figure><img src="{up}pictures/{name}.png" width="{width}" height="{height}" '
              f'alt="{escape(label)}, drawn over {escape(ground)}">'
              f'<figcaption><span class="strip-label">{escape(label)}</span>'
              f'<details><summary>Command</summary><pre>{escape(command)}</pre></details></figcaption></figure>\n')
    write('</div>\n')
    raise nodes.SkipNode


class StripDirective(Directive):
    required_arguments = 1
    final_argument_whitespace = True

    def run(self):
        env = self.state.document.settings.env
        return [add_strip(env, *strip_of(env.app.vindrel_facts, self.arguments[0]))]


class PicturesDirective(Directive):
    has_content = True
    option_spec = {'ground': directives.unchanged, 'with': directives.unchanged, 'name': directives.unchanged_required,
                   'same': directives.flag}

    def run(self):
        env = self.state.document.settings.env
        ground = self.options.get('ground', 'flat.png')
        common = shlex.split(self.options.get('with', ''))
        pictures = []
        for number, line in enumerate((line for line in self.content if line.strip()), 1):
            label, found, options = line.partition('::')
            if not found:
                raise self.error(f'no "::" between label and options: {line}')
            passes = [shlex.split(one) for one in options.split(';;')]
            over = ground
            if passes[0] and passes[0][0].endswith('.png'):
                over = passes[0].pop(0)
            pictures.append(Picture(f'{self.options["name"]}-{number}', label.strip(), over,
                                    *(common + one for one in passes)))
        told = []
        for word, value in zip(common[::2], common[1::2]):
            told.append(value.replace('=', ' = ', 1))
        return [add_strip(env, pictures, ', '.join(told), 'same' not in self.options)]


class ControlsDirective(Directive):
    """A section for each control, in the order in which the effect shows them."""
    has_content = True

    def run(self):
        env = self.state.document.settings.env
        facts = env.app.vindrel_facts
        sections = []
        for pattern in (line.strip() for line in self.content):
            if not pattern:
                continue
            if pattern not in facts.help:
                raise self.error(f'controls.json has no help on "{pattern}"')
            sections.append(self.section(env, facts, pattern))
            env.vindrel_told.setdefault(env.docname, []).append(pattern)
        return sections

    def section(self, env, facts, pattern):
        row, words = facts.row(pattern), facts.help[pattern]
        names = [pattern.replace('#', str(n)) for n in (1, 2, 3)] if '#' in pattern else [pattern]
        title = pattern.replace(' #', '')
        page = nodes.section(ids=[slug(name) for name in names], names=[title.lower()])
        page += nodes.title('', title)
        # Other pages refer to a control by its name: :ref:`ratio-size-1`.
        domain = env.get_domain('std')
        for name in names:
            domain.labels[slug(name)] = (env.docname, slug(name), name)
            domain.anonlabels[slug(name)] = (env.docname, slug(name))
        page += nodes.paragraph('', words['help'])
        if 'more' in words:
            page += nodes.paragraph('', words['more'])
        facts_list = nodes.field_list(classes=['control-facts'])
        for head, told in self.facts(row, names):
            field = nodes.field()
            field += nodes.field_name('', head)
            body = nodes.field_body()
            body += nodes.paragraph('', told)
            field += body
            facts_list += field
        page += facts_list
        page += add_strip(env, *strip_of(facts, pattern))
        return page

    def facts(self, row, names):
        if len(names) > 1:
            yield 'In the effect', ', '.join(names)
        kind = row['kind']
        if kind == 'group':
            yield 'Kind', 'a group of controls'
            return
        if kind == 'choice':
            yield 'Choices', ', '.join(choice for choice in row['choices'] if choice != '(-')
        elif kind in ('number', 'whole number'):
            low, high = (plain_number(value, row) for value in row['valid'])
            slider = [plain_number(value, row) for value in row['slider']]
            yield 'Range', f'{low} to {high}' + (f'; the slider goes from {slider[0]} to {slider[1]}'
                                                 if row['slider'] != row['valid'] else '')
        elif kind == 'angle':
            yield 'Range', 'any angle, any number of turns'
        else:
            yield 'Kind', {'check box': 'on or off', 'colour': 'a colour', 'place': 'a place on the layer',
                           'layer': 'a layer of the composition'}[kind]
        yield 'Default', shown_default(row)


class LooksDirective(Directive):
    """Every look of a kind, with its two pictures."""
    required_arguments = 1
    commands = {'presets': 'vindrel render IN OUT --preset ', 'recipes': 'vindrel screens IN OUT --recipe '}

    def run(self):
        env, kind = self.state.document.settings.env, self.arguments[0]
        if kind not in self.commands:
            raise self.error(f'looks are {" or ".join(self.commands)}, not "{kind}"')
        env.note_dependency(str(tree / 'docs/make-gallery'))
        sections = []
        for name, keys in env.app.vindrel_studio.draw_looks(kind).items():
            file = tree / kind / f'{name}.json'
            env.note_dependency(str(file))
            settings = file.read_text(encoding='utf-8')
            page = nodes.section(ids=[name], names=[name])
            page += nodes.title('', look_title(name))
            page += nodes.paragraph('', json.loads(settings)['about'])
            page += add_look(env, name, keys)
            page += nodes.literal_block('', self.commands[kind] + name)
            page += folded('Settings', settings)
            sections.append(page)
        return sections


def look_title(name):
    title = name.replace('-', ' ').capitalize()
    return re.sub(r'^(Cmyk|Led)\b', lambda word: word.group().upper(), title)


def add_look(env, name, keys):
    studio, shown = env.app.vindrel_studio, env.vindrel_shown.setdefault(env.docname, {})
    node = look(pictures=[])
    for part, words in (('whole', f'{name}, the whole picture made small'), ('part', f'a part of {name}, four times as large')):
        shown[f'{name}-{part}'] = keys[part]
        with Image.open(studio.cache / keys[part]) as image:
            node['pictures'].append((f'{name}-{part}', words, image.size))
    return node


def visit_look(writer, node):
    up = '../' * writer.builder.current_docname.count('/')
    writer.body.append('<div class="look">\n')
    for name, words, (width, height) in node['pictures']:
        writer.body.append(f'<img src="{up}pictures/{name}.jpg" width="{width}" height="{height}" '
                           f'alt="{escape(words)}">\n')
    writer.body.append('</div>\n')
    raise nodes.SkipNode


def folded(summary, text):
    """A text that a click unfolds."""
    return nodes.raw('', f'<details class="settings"><summary>{escape(summary)}</summary>'
                         f'<div class="highlight"><pre>{escape(text)}</pre></div></details>\n', format='html')


def begin(app):
    env = app.env
    for name in ('vindrel_shown', 'vindrel_told'):
        if not hasattr(env, name):
            setattr(env, name, {})
    app.vindrel_studio = Studio(app.config.vindrel_cache)
    app.vindrel_facts = Facts()


def forget(app, env, docname):
    env.vindrel_shown.pop(docname, None)
    env.vindrel_told.pop(docname, None)


def check_all_told(app, env):
    told = [pattern for page in env.vindrel_told.values() for pattern in page]
    missing = [name for name in app.vindrel_facts.help if name not in told]
    if missing:
        raise ExtensionError('no page tells of these controls: ' + ', '.join(missing))
    twice = sorted({name for name in told if told.count(name) > 1})
    if twice:
        raise ExtensionError('told on two pages: ' + ', '.join(twice))


def finish(app, error):
    if error:
        return
    env, studio = app.env, app.vindrel_studio
    folder = Path(app.outdir) / 'pictures'
    folder.mkdir(exist_ok=True)
    now = {}
    for page in env.vindrel_shown.values():
        for name, key in page.items():
            if now.get(name, key) != key:
                raise ExtensionError(f'two pictures of the manual are called {name}')
            now[name] = key
            target = folder / (name + Path(key).suffix)
            if not target.exists() or target.read_bytes() != (studio.cache / key).read_bytes():
                shutil.copyfile(studio.cache / key, target)
    mend_theme(Path(app.outdir) / '_static')
    shutil.copytree(grounds, Path(app.outdir) / 'grounds', dirs_exist_ok=True, ignore=shutil.ignore_patterns('make'))
    for file in folder.iterdir():
        if Path(now.get(file.stem, '')).suffix != file.suffix:
            file.unlink()
    tell_changes(studio, now)
    used = set(now.values())
    for ending in ('*.png', '*.jpg'):
        for file in studio.cache.glob(ending):
            if file.name not in used:
                file.unlink()


def mend_theme(static):
    """Debian's build of the theme suits a web server and a light screen alone. Where it still has these three faults, they
    are mended; a theme without them stays as it is.

    - The style sheet begins with another one at an absolute address, which doesn't exist on a reader's disk.
    - The dark colors that follow the system's setting got lost when the style sheet was made from its source.
    - A script imports another as a module, which browsers refuse for files on a disk.
    """
    sheet = static / 'styles' / 'furo.css'
    style = sheet.read_text(encoding='utf-8')
    outside = '@import url(/javascript/normalize.css/normalize.css);'
    if outside in style:
        style = style.replace(outside, Path('/usr/share/javascript/normalize.css/normalize.css').read_text(encoding='utf-8'))
    if 'prefers-color-scheme' not in style:
        dark = re.findall(r'body\[data-theme="dark"\] \{[^}]*\}', style)
        if not dark:
            raise ExtensionError('the theme has no dark colors where they are looked for')
        style += '@media not print { @media (prefers-color-scheme: dark) {\n'
        style += '\n'.join(dark).replace('[data-theme="dark"]', '[data-theme="auto"]')
        style += '\n  body[data-theme="auto"] .only-light { display: none !important; } } }\n'
    sheet.write_text(style, encoding='utf-8')
    script = static / 'scripts' / 'furo.js'
    code = script.read_text(encoding='utf-8')
    line = 'import Gumshoe from "./gumshoe-patched.js";\n'
    if line in code:
        imported = script.with_name('gumshoe-patched.js').read_text(encoding='utf-8')
        script.write_text(imported + code.replace(line, ''), encoding='utf-8')


def tell_changes(studio, now):
    pixels = {name: studio.pixels(key) for name, key in now.items()}
    record = studio.cache / 'last-build.json'
    last = json.loads(record.read_text()) if record.exists() else None
    record.write_text(json.dumps(pixels, indent=1, sort_keys=True) + '\n')
    if last is None:
        print(f'{len(pixels)} pictures, all new here')
        return
    groups = [('changed', [name for name in pixels if name in last and last[name] != pixels[name]]),
              ('new', [name for name in pixels if name not in last]),
              ('gone', [name for name in last if name not in pixels])]
    print(f'{len(pixels)} pictures; ' + ', '.join(f'{len(names)} {word}' for word, names in groups) +
          ' since the last build in this folder')
    for word, names in groups:
        for name in sorted(names):
            print(f'  {word}: {name}')


def setup(app):
    app.add_config_value('vindrel_cache', '', 'env')
    app.add_config_value('vindrel_build', '', 'env')
    app.add_node(strip, html=(visit_strip, None))
    app.add_node(look, html=(visit_look, None))
    app.add_directive('looks', LooksDirective)
    app.add_directive('strip', StripDirective)
    app.add_directive('pictures', PicturesDirective)
    app.add_directive('controls', ControlsDirective)
    app.connect('builder-inited', begin)
    app.connect('env-purge-doc', forget)
    app.connect('env-check-consistency', check_all_told)
    app.connect('build-finished', finish)
    return {'parallel_read_safe': False}
