"""Reads NMR-STAR and NEF for the tests, on its own: nothing of the program is used.

Written for files that are right, and for what the test files have on purpose. It gives, for each chain of amino
acids, the residues in order and, for each shift list, the value of each atom that a shift table can hold.
"""
import re

TOKEN = re.compile(r"""^;(?P<field>.*?)\n; | \#[^\n]* | '(?P<single>[^'\n]*(?:'(?=[^\s\#])[^'\n]*)*)'(?=[\s\#]|$)
                       | "(?P<double>[^"\n]*(?:"(?=[^\s\#])[^"\n]*)*)"(?=[\s\#]|$) | (?P<word>\S+)""",
                   re.MULTILINE | re.DOTALL | re.VERBOSE)
LETTERS = dict(zip("ALA ARG ASN ASP CYS GLN GLU GLY HIS ILE LEU LYS MET PHE PRO SER THR TRP TYR VAL".split(),
                   "ARNDCQEGHILKMFPSTWYV"))
PARENTS = {"MSE": "M", "SEP": "S", "TPO": "T", "HYP": "P", "DAL": "A"}
NO_RESIDUES = {"CA", "ZN", "HEM"}
CODES = {letter: name for name, letter in LETTERS.items()}


class Frame:
    def __init__(self, name):
        self.name, self.pairs, self.loops = name, {}, []

    def tables(self, category):
        """Rows of all loops of a category, as dictionaries of the tags after the point, in lower case."""
        for tags, rows in self.loops:
            if any(tag.lower().startswith(category.lower()) for tag in tags):
                keys = [tag.split(".", 1)[-1].lower().lstrip("_") for tag in tags]
                yield from (dict(zip(keys, row)) for row in rows)


def words(text):
    line, counted = 0, 0
    for match in TOKEN.finditer(text):
        line += text.count("\n", counted, match.start())
        counted = match.start()
        kind = match.lastgroup
        if kind is not None:
            yield kind == "word", match.group(kind).strip(), line


def rows_of(values, width):
    """Whole rows. Where values are missing, those lines that hold whole rows."""
    if len(values) % width == 0:
        return [[v for v, _ in values[i:i + width]] for i in range(0, len(values), width)]
    lines = {}
    for value, line in values:
        lines.setdefault(line, []).append(value)
    return [line for line in lines.values() if len(line) == width]


def frames(text):
    """The save frames, with what stands outside them in frames without a name."""
    found = [Frame("")]
    stream = list(words(text))
    at = 0
    while at < len(stream):
        plain, word, _ = stream[at]
        at += 1
        if plain and word.lower().startswith(("data_", "save_")):
            found.append(Frame(word[5:]))
        elif plain and word.lower() == "loop_":
            tags, values = [], []
            while at < len(stream) and stream[at][0] and stream[at][1].startswith("_"):
                tags.append(stream[at][1])
                at += 1
            while at < len(stream):
                plain, word, line = stream[at]
                if plain and (word.startswith("_") or word.lower() in ("loop_", "stop_") or
                              word.lower().startswith(("data_", "save_"))):
                    break
                values.append(("" if word in (".", "?") else word, line))
                at += 1
            found[-1].loops.append((tags, rows_of(values, len(tags))))
        elif plain and word.startswith("_") and at < len(stream):
            found[-1].pairs[word.lower()] = "" if stream[at][1] in (".", "?") else stream[at][1]
            at += 1
    return found


class Chain:
    def __init__(self, names):
        self.names = [n for n in names if n]
        self.residues = []  # (key, author's number or "", name)
        self.is_given = True
        self.bonded = set()  # keys of residues that the file calls bonded to the one before
        self.rows = {}      # by list: (key, author's number, name, atom, value, occupancy)

    def letter(self, name):
        return LETTERS.get(name.upper(), PARENTS.get(name.upper(), "?"))

    def sequence(self):
        return "".join(self.letter(name) for _, _, name in self.residues)


def letters_of(text):
    """One-letter text as residues: (MSE) is one, X is open."""
    return [m[0].strip("()") if m[0][0] == "(" else CODES.get(m[0].upper(), "")
            for m in re.finditer(r"\([A-Za-z0-9]+\)|[A-Za-z]", text)]


def read_nef(all_frames):
    chains = {}
    for frame in all_frames:
        for row in frame.tables("_nef_sequence."):
            chain = chains.setdefault(row["chain_code"], Chain([row["chain_code"]]))
            if row.get("linking") in ("single", "dummy", "nonlinear") and row["residue_name"] not in LETTERS:
                continue
            if row["residue_name"] in NO_RESIDUES:
                continue
            place = int(row["index"])
            if getattr(chain, "forward", False) and row.get("linking") in ("middle", "end", "cyclic") and \
                    place == chain.place + 1:  # no row between them is lost
                chain.bonded.add(row["sequence_code"])
            chain.place = place
            chain.forward = row.get("linking") in ("start", "middle", "cyclic")
            chain.residues.append((row["sequence_code"], row["sequence_code"], row["residue_name"]))
    for frame in all_frames:
        for row in frame.tables("_nef_chemical_shift."):
            code, number = row["chain_code"], row["sequence_code"]
            if "@" in code + number or code not in chains:
                continue
            if row.get("element", "") == "CA":  # calcium
                continue
            # A shift kept under a neighbour gives way to the residue's own.
            weight = 0.0 if re.search(r"\d[-+]\d$", number) else 1.0
            chains[code].rows.setdefault(frame.name, []).append(
                (number, number, row["residue_name"], row["atom_name"], row["value"], weight))
    return list(chains.values())


def read_star3(all_frames):
    entities, chains = {}, {}
    for frame in all_frames:
        if "_entity.id" in frame.pairs:
            entity = entities.setdefault(frame.pairs["_entity.id"], {"residues": [], "names": []})
            entity["names"] = [frame.name, frame.pairs.get("_entity.polymer_strand_id", ""), frame.pairs["_entity.id"]]
            entity["type"] = frame.pairs.get("_entity.polymer_type", "")
            entity["residues"] = [(row["id"], row.get("auth_seq_id", ""), row["comp_id"])
                                  for row in frame.tables("_Entity_comp_index.")]
            if not entity["residues"]:
                letters = letters_of(frame.pairs.get("_entity.polymer_seq_one_letter_code", ""))
                entity["residues"] = [(str(i + 1), "", name) for i, name in enumerate(letters)]
    for frame in all_frames:
        for row in frame.tables("_Entity_assembly."):
            entity = entities.get(row["entity_id"], {"residues": [], "names": []})
            chain = Chain([row.get("asym_id", ""), row.get("pdb_chain_id", ""), row["id"]])
            chain.residues, chain.entity, chain.authors = list(entity["residues"]), row["entity_id"], chain.names
            chains[row["id"]] = chain
        for row in frame.tables("_Chem_comp_assembly."):
            chain = chains.setdefault(row["entity_assembly_id"], Chain([row.get("auth_asym_id", ""), row["entity_assembly_id"]]))
            chain.authors = chain.names
            key = row.get("comp_index_id") or row.get("seq_id")
            chain.residues.append((key, row.get("auth_seq_id", ""), row["comp_id"]))
    if not chains:
        for entity_id, entity in entities.items():
            chain = Chain(entity["names"])
            chain.residues, chain.entity, chain.authors = list(entity["residues"]), entity_id, []
            chains["entity " + entity_id] = chain
    described = bool(chains)
    unlisted = {}
    for frame in all_frames:
        for row in frame.tables("_Atom_chem_shift."):
            if row.get("entity_assembly_id", "") not in chains:
                unlisted.setdefault(row.get("entity_id"), set()).add(row.get("entity_assembly_id", ""))
    for frame in all_frames:
        for row in frame.tables("_Atom_chem_shift."):
            copy, author = row.get("entity_assembly_id", ""), row.get("auth_asym_id", "")
            key, number = row.get("comp_index_id") or row.get("seq_id", ""), row.get("auth_seq_id", "")
            chain = chains.get(copy)
            if chain is None and copy and described:
                owners = [c for c in chains.values() if author and author in c.authors]
                if owners and number:
                    chain, key = owners[0], ""
                elif owners or not row.get("entity_id"):
                    continue
            if chain is None and row.get("entity_id"):
                owners = [c for c in chains.values() if getattr(c, "entity", None) == row["entity_id"]]
                if copy and len(owners) > 1:
                    continue
                if copy and owners and len(unlisted[row["entity_id"]]) > 1:
                    owners = [chains.setdefault(copy, Chain([copy]))]
                    owners[0].residues = list(entities[row["entity_id"]]["residues"])
                chain = owners[0] if owners else None
            if chain is None and described and len(chains) == 1:
                chain = next(iter(chains.values()))
            if chain is None:
                chain = chains.setdefault(copy, Chain([author, copy]))
                chain.authors = []
                chain.is_given = False
            chain.rows.setdefault(frame.name, []).append(
                (key, number, row.get("comp_id") or row.get("auth_comp_id"), row.get("atom_id") or row.get("auth_atom_id"),
                 row.get("val") or row.get("chem_shift_val", ""), float(row.get("occupancy") or 1)))
    return list(chains.values())


def read_star2(all_frames):
    molecules, chains = {}, {}
    for frame in all_frames:
        if "_mol_polymer_class" in frame.pairs or frame.pairs.get("_saveframe_category") == "monomeric_polymer":
            residues = [(row["residue_seq_code"], row.get("residue_author_seq_code", ""), row["residue_label"])
                        for row in frame.tables("_Residue_seq_code")]
            if not residues:
                letters = letters_of(frame.pairs.get("_mol_residue_sequence", ""))
                residues = [(str(i + 1), "", name) for i, name in enumerate(letters)]
            molecules[frame.name] = residues
    for frame in all_frames:
        for row in frame.tables("_Mol_label"):
            if "mol_system_component_name" not in row:
                continue
            chain = chains.setdefault(row["mol_system_component_name"], Chain([row["mol_system_component_name"]]))
            chain.residues = list(molecules.get(row["mol_label"].lstrip("$"), []))
    if not chains:
        for name, residues in molecules.items():
            chains[name] = Chain([name])
            chains[name].residues = residues
    for frame in all_frames:
        component = frame.pairs.get("_mol_system_component_name", "")
        for row in frame.tables("_Chem_shift_value"):
            if "atom_name" not in row:
                continue
            component = row.get("mol_system_component_name", component)
            if component not in chains and len(chains) == 1:
                component = next(iter(chains))
            chain = chains.setdefault(component, Chain([component]))
            chain.is_given = bool(chain.residues) or bool(molecules)
            chain.rows.setdefault(frame.name, []).append(
                (row["residue_seq_code"], row.get("residue_author_seq_code", ""), row["residue_label"], row["atom_name"],
                 row["chem_shift_value"], 1.0))
    return list(chains.values())


def atoms(letter, atom):
    """Names of the table for an atom of a residue; none for one that a table does not hold."""
    atom = atom.upper()
    if letter == "P" and atom in ("H", "HN"):
        return []
    if letter == "G":
        if atom in ("HA%", "HA*", "QA", "HA"):
            return ["HA2", "HA3"]
        named = {"HAX": "HA2", "HAY": "HA3", "HA2": "HA2", "HA3": "HA3", "HA1": "HA1"}
        if atom in named:
            return [named[atom]]
        if atom == "CB":
            return []
    if atom == "CG":
        return ["CG"] if letter == "P" else []
    return {"H": ["HN"], "HN": ["HN"], "N": ["N"], "CA": ["CA"], "CB": ["CB"], "C": ["C"], "CO": ["C"],
            "HA": ["HA"]}.get(atom, [])


def offset_of(chain, rows):
    """By how much the rows' numbers differ from the places in the sequence; 0 where they fit as they are."""
    places = {key: i for i, (key, _, _) in enumerate(chain.residues)}
    named = {(key or number, name) for key, number, name, *_ in rows}
    fit = sum(1 for key, name in named if key in places and
              chain.letter(chain.residues[places[key]][2]) in (chain.letter(name), "?"))
    if 2 * fit >= len(named):
        return None
    sequence = chain.sequence()
    best = max(range(-1000, 1000), key=lambda d: sum(
        1 for key, name in named if key.lstrip("-").isdigit() and 0 < int(key) + d <= len(sequence) and
        sequence[int(key) + d - 1] == chain.letter(name)))
    return best


def derive(chain):
    """The sequence of a chain that has none: residues with rows by number, gaps filled."""
    seen = {}
    for rows in chain.rows.values():
        for key, number, name, *_ in rows:
            if (key or number).lstrip("-").isdigit():
                seen.setdefault(int(key or number), (key or number, number, name))
    for place in range(min(seen), max(seen) + 1):
        chain.residues.append(seen.get(place, (str(place), "", "")))


def fill_gaps(chain):
    """Residues that the numbers of a sequence jump over, unless the file calls their neighbours bonded."""
    whole = []
    for residue in chain.residues:
        if whole and residue[0] not in chain.bonded:
            before, after = (int(re.match(r"-?\d+", key)[0]) for key in (whole[-1][0], residue[0]))
            whole += [(str(missing), "", "") for missing in range(before + 1, after)]
        whole.append(residue)
    chain.residues = whole


def shifts(chain, rows):
    """{(place from 1, atom): value} as a table has them."""
    offset = offset_of(chain, rows) if chain.is_given else None
    by_key, by_number = {}, {}
    for place, (key, number, _) in enumerate(chain.residues, 1):
        by_key.setdefault(key, place)
        by_number.setdefault(number or key, place)
        for step in (-1, 0, 1):
            by_key.setdefault("%s%+d" % (key, step), place + step if 0 < place + step <= len(chain.residues) else None)
    found = {}
    for key, number, name, atom, value, occupancy in rows:
        if offset is not None:
            place = int(key or number) + offset
            place = place if 0 < place <= len(chain.residues) else None
        else:
            place = by_key.get(key) if key else by_number.get(number)
        if place is None:
            continue
        # A residue that the sequence leaves open is what its rows say.
        own = chain.residues[place - 1][2] or name
        letter = chain.letter(own)
        if chain.letter(name) not in (letter, "?") or name in NO_RESIDUES:
            continue
        if own.upper() == "HYP" and atom.upper() in ("CB", "CG"):
            continue
        try:
            number_value = float(value)
        except ValueError:
            continue
        if abs(number_value) >= 999:
            continue
        for table_atom in atoms(letter, atom):
            if (place, table_atom) not in found or occupancy > found[place, table_atom][1]:
                found[place, table_atom] = (number_value, occupancy)
    settled = {}
    for (place, atom), (value, _) in found.items():
        is_older = (place, "HA1") in found and (place, "HA3") not in found
        if atom in ("HA1", "HA2") and is_older:
            atom = {"HA1": "HA2", "HA2": "HA3"}[atom]
        settled[place, atom] = value
    return settled


def read(text):
    """The chains of a file."""
    if re.search(r"(?m)^\s*_nef_", text):
        return read_nef(frames(text))
    if re.search(r"(?im)^\s*_(Saveframe_category|Chem_shift_value)\b", text):
        return read_star2(frames(text))
    return read_star3(frames(text))
