"""Makes the manual one HTML page that needs no other file.

usage: manual_page.py MANUAL STYLE-SHEET VERSION >PAGE
"""

import re
import subprocess
import sys
from pathlib import Path


def anchor(heading: str) -> str:
    """The id that a heading has on GitHub, so that the manual's links work in both places."""
    return re.sub(r"[^\w -]", "", re.sub(r"<[^>]*>", "", heading).lower()).replace(" ", "-")


def check_links(body: str) -> None:
    """Ends the program when a link leads nowhere, or when the page would need another file."""
    missing = set(re.findall(r'href="(?!https?:)#?([^"]*)"', body)) - set(re.findall(r' id="([^"]*)"', body))
    if missing or "<img" in body:
        sys.exit(f"The manual has pictures, or links to what it does not have: {missing}")


def contents(body: str) -> str:
    """The list of the sections and their subsections."""
    sections = re.findall(r'<(h[23]) id="(.*?)">(.*?)</h', body)
    lines = [f'<li class="{kind}"><a href="#{name}">{heading}</a></li>\n'
             for kind, name, heading in sections]
    return f'<nav aria-label="Contents">\n<ul>\n{"".join(lines)}</ul>\n</nav>\n'


def main() -> None:
    manual, style, version = sys.argv[1:]
    body = subprocess.run(["cmark-gfm", "--extension", "table", manual],
                          stdout=subprocess.PIPE, encoding="utf-8", check=True).stdout
    body = re.sub(r"<(h[23])>(.*?)</\1>", lambda m: f'<{m[1]} id="{anchor(m[2])}">{m[2]}</{m[1]}>', body)
    check_links(body)
    body = body.replace("<table>", '<div class="wide"><table>').replace("</table>", "</table></div>")
    title, rest = body.split("</h1>\n", 1)
    page = f"""<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>kxDeleteOldFiles {version}: manual</title>
<style>
{Path(style).read_text(encoding="utf-8")}</style>
</head>
<body>
{title} {version}</h1>
{contents(body)}{rest}</body>
</html>
"""
    sys.stdout.buffer.write(page.encode())


if __name__ == "__main__":
    main()
