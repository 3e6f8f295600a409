"""Makes HTML pages of the manual's Markdown chapters, in a folder of their own with their style and pictures.

Usage: build-manual.py manual-folder pictures-folder output-folder

The pages need no network and no scripts. Debian package: python3-markdown.
"""

import html
import os
import re
import shutil
import sys

import markdown

EXTENSIONS = ["tables", "fenced_code", "toc", "sane_lists"]
STYLE = "estilo.css"
PAGE = """<!DOCTYPE html>
<html lang="es">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title>{title}</title>
<link rel="stylesheet" href="{style}">
</head>
<body>
{navigation}
<main>
{heading}
{contents}
{body}
</main>
{navigation}
</body>
</html>
"""


def slug(heading, _separator="-"):
    """The name that repositories on the web give to a heading, so that links work there too."""
    return re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")


def chapters(folder):
    """The cover first, then the chapters in order."""
    names = sorted(name for name in os.listdir(folder) if name.endswith(".md") and name != "README.md")
    return ["README.md"] + names


def page_name(chapter):
    return "index.html" if chapter == "README.md" else chapter[: -len(".md")] + ".html"


def pointed_at_pages(body):
    """Links lead to pages, and pictures lie beside them."""
    body = re.sub(
        r'href="([\w-]+\.md)(#[^"]*)?"', lambda m: f'href="{page_name(m[1])}{m[2] or ""}"', body
    )
    return body.replace('src="../images/', 'src="images/')


def navigation(titles, at):
    def link(step, relation, arrow):
        if not 0 <= at + step < len(titles):
            return "<span></span>"
        name, title = titles[at + step]
        text = html.escape(f"← {title}" if arrow == "left" else f"{title} →")
        return f'<a rel="{relation}" href="{page_name(name)}">{text}</a>'

    home = '<a href="index.html">Índice</a>' if at > 0 else "<span></span>"
    return f'<nav>{link(-1, "prev", "left")}{home}{link(1, "next", "right")}</nav>'


def contents(converter, at):
    """The sections of a chapter; the cover is the table of contents of all."""
    sections = converter.toc_tokens[0]["children"] if at > 0 else []
    if len(sections) < 3:
        return ""
    items = "".join(f'<li><a href="#{s["id"]}">{s["name"]}</a></li>' for s in sections)
    return f'<details class="contenido"><summary>En este capítulo</summary><ul>{items}</ul></details>'


def build(source, pictures, output):
    shutil.rmtree(output, ignore_errors=True)
    os.makedirs(os.path.join(output, "images"))
    shutil.copy(os.path.join(source, STYLE), output)
    names = chapters(source)
    texts = {}
    for name in names:
        with open(os.path.join(source, name), encoding="utf-8") as file:
            texts[name] = file.read()
    titles = [(name, texts[name].split("\n", 1)[0].lstrip("# ")) for name in names]
    for at, name in enumerate(names):
        converter = markdown.Markdown(
            extensions=EXTENSIONS, extension_configs={"toc": {"slugify": slug}}, output_format="html"
        )
        body = pointed_at_pages(converter.convert(texts[name]))
        body = body.replace("<table>", '<div class="tabla"><table>').replace(
            "</table>", "</table></div>"
        )
        for picture in re.findall(r'src="images/([^"]+)"', body):
            shutil.copy(os.path.join(pictures, picture), os.path.join(output, "images"))
        title = titles[at][1] if at == 0 else f"{titles[at][1]} - Manual de Tavinor"
        heading, body = body.split("\n", 1)
        page = PAGE.format(
            title=html.escape(title),
            style=STYLE,
            navigation=navigation(titles, at),
            heading=heading,
            contents=contents(converter, at),
            body=body,
        )
        with open(os.path.join(output, page_name(name)), "w", encoding="utf-8") as file:
            file.write(page)


if __name__ == "__main__":
    build(*sys.argv[1:4])
