# SPDX-License-Identifier: MIT
"""Every block of code in a document is a file of the tree or a part of one.

    code_test.py            compares
    code_test.py --write    puts the files' text into the documents
"""
import re
import sys
import unittest

import pages


class Code(unittest.TestCase):
    def test_is_what_the_file_has(self):
        compared = 0
        for page in pages.pages():
            for comment, language, text in pages.blocks(page):
                if language not in pages.CODE:
                    continue
                with self.subTest(page=page.name, block=comment or text):
                    self.assertTrue(comment, "no comment in front says which file this is")
                    self.assertEqual(text, pages.quoted(comment))
                    compared += 1
        self.assertGreater(compared, 5)

    def test_every_block_is_of_a_kind_that_is_known(self):
        for page in pages.pages():
            for comment, language, text in pages.blocks(page):
                with self.subTest(page=page.name, block=text):
                    self.assertIn(language, pages.CODE | {"", "console"})
                    self.assertTrue(language or not comment)


class Links(unittest.TestCase):
    def test_lead_to_files_and_headings(self):
        for page in pages.pages():
            for target in re.findall(r"\]\(([^)\s]+)\)", page.read_text()):
                if "://" in target:
                    continue
                name, _, heading = target.partition("#")
                with self.subTest(page=page.name, link=target):
                    file = page.parent / name if name else page
                    self.assertTrue(file.exists())
                    if heading:
                        titles = re.findall(r"^#+ (.*)$", file.read_text(), re.MULTILINE)
                        anchors = [re.sub(r"[^\w -]", "", t).lower().replace(" ", "-")
                                   for t in titles]
                        self.assertIn(heading, anchors)


def write():
    for page in pages.pages():
        def fresh(block):
            if block["language"] not in pages.CODE or not block["comment"]:
                return block[0]
            return (f"<!-- {block['comment']} -->\n```{block['language']}\n"
                    f"{pages.quoted(block['comment'])}```")
        old = page.read_text()
        new = pages.FENCE.sub(fresh, old)
        if new != old:
            page.write_text(new)


if __name__ == "__main__":
    write() if "--write" in sys.argv else unittest.main()
