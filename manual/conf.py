"""How Sphinx builds the manual. ./dev manual tells it where the program and the cache of pictures are."""
import os
import sys
from pathlib import Path

here = Path(__file__).resolve().parent
sys.path.insert(0, str(here / 'extension'))
import vindrel_pictures  # noqa: E402  (found by the line above)

project = 'Vindrel'
author = 'The Vindrel Developers'
version = release = os.environ['VINDREL_VERSION']
copyright = 'The Vindrel Developers, 2026. All rights reserved.'
language = 'en'

extensions = ['vindrel_pictures', 'sphinx_copybutton']
exclude_patterns = ['extension', 'grounds', 'static']
vindrel_cache = os.environ['VINDREL_PICTURE_CACHE']
# All pages are read again when one of these changes.
vindrel_build = vindrel_pictures.digest(
    vindrel_pictures.build_digest(),
    *(path.read_bytes() for path in sorted(here.glob('*.json')) + [here / 'extension' / 'vindrel_pictures.py']))

html_theme = 'furo'
html_title = f'Vindrel {version}'
html_static_path = ['static']
html_css_files = ['manual.css']
html_copy_source = False
html_show_sphinx = False
# A page opened from a disk can't fetch the others for their first lines; titles are found all the same.
html_show_search_summary = False
html_last_updated_fmt = None
html_theme_options = {
    'light_css_variables': {'color-brand-primary': '#9a3c00', 'color-brand-content': '#9a3c00'},
    'dark_css_variables': {'color-brand-primary': '#ff9d52', 'color-brand-content': '#ff9d52'},
}
copybutton_selector = 'div.highlight pre, .strip pre'
highlight_language = 'none'
