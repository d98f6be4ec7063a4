"""Words and phrases of search terms: those a term is cut into, and how often they stand in the lines of a report."""

import unicodedata

import names
import textrules as tr


def phrase_lengths(field):
    if field >= 16:
        return [field - 14]
    return {12: range(1, 8), 13: range(2, 8), 14: range(3, 8), 15: [1]}[field]


def _is_letter_or_digit(letter):
    return unicodedata.category(letter)[0] in "LN"


def _clean_word(word):
    while word and not _is_letter_or_digit(word[0]):
        word = word[1:]
    while word and not _is_letter_or_digit(word[-1]):
        word = word[:-1]
    return word.strip(" ")


def cut_term(term, field):
    words = [_clean_word(word) for word in tr.lower(term).decode("utf-8").split(" ")]
    words = [word for word in words if word]
    values = []
    for length in phrase_lengths(field):
        for start in range(len(words) - length + 1):
            add_unique(values, " ".join(words[start:start + length]).encode("utf-8"))
    return values


def add_unique(items, item):
    if item not in items:
        items.append(item)


def frequencies(lines, length):
    """(phrase, users) of the value lines of a report. The words are taken as they stand; a phrase counts as often as
    it stands in a line."""
    counts, texts = {}, {}
    for label, users in lines:
        if label in (b"", names.NOT_SEARCH_ENGINE):
            continue
        listed = label.split(b" ")
        for start in range(len(listed) - length + 1):
            phrase = b" ".join(listed[start:start + length])
            key = tr.lower(phrase)
            texts.setdefault(key, phrase)
            counts[key] = counts.get(key, 0) + users
    return sorted(((texts[key], users) for key, users in counts.items()), key=lambda item: -item[1])
