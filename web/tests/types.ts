// A strict program that reads every member of a result.
import {
  contents, flaggedNef, load, predict, PredictionError, report, restraints, shiftTables, versions,
} from "zorvela";
import type { Evidence, Input, Match, Offset, Proline, Protein, Result, Shift, ShiftName, Site, Structure } from "zorvela";

type Value = string | number | boolean | null | undefined;

function evidenceOf({ prior, prev, next, shifts, log_odds }: Evidence): Value[] {
  const cb: Shift = shifts.CB;
  const names: ShiftName[] = ["prev_CA", "next_HN"];
  const each = [cb, shifts.CG, ...names.map((name) => shifts[name])].flatMap((shift) =>
    [shift.observed, shift.corrected, shift.reference, shift.used, shift.clipped, shift.cis_mean, shift.cis_deviation,
     shift.trans_mean, shift.trans_deviation, shift.nats]);
  return [prior, log_odds, ...each, ...[prev, next].flatMap((neighbour) =>
    [neighbour.name, neighbour.cis_share, neighbour.trans_share, neighbour.nats])];
}

const siteOf = ({ file, chain, resid, residue, models, bonds, alternatives, reason }: Site): Value[] =>
  [file, chain, resid, residue, models, reason, ...[...bonds, ...alternatives].flatMap((bond): Value[] =>
    [bond.model, bond.conformation, bond.omega, bond.ca_distance, bond.state])];

function prolineOf(proline: Proline): Value[] {
  const { resid, position, prev, next, prev_resid, next_resid, cs_cnt_prev, cs_cnt, cs_cnt_next, cg_shift } = proline;
  const { p_cis, p_cis_norm, call, reason, cis_flag, evidence, next_shifts } = proline;
  const { structure, verdict, models_cis, models_trans, models_twisted, omega, ca_distance, sites } = proline;
  const isCis: boolean = call === "cis";
  return [resid, position, prev, next, prev_resid, next_resid, cs_cnt_prev, cs_cnt, cs_cnt_next, cg_shift, p_cis,
          p_cis_norm, isCis, reason, cis_flag, structure, verdict, models_cis, models_trans, models_twisted, omega,
          ca_distance, proline.structure_sentence, proline.call_as_referenced, proline.p_cis_norm_as_referenced,
          ...(evidence === null ? [] : evidenceOf(evidence)),
          ...(next_shifts ?? []).flatMap((best): Value[] => [best.shift, best.bits, best.decides]),
          ...(sites ?? []).flatMap(siteOf)];
}

const offsetOf = ({ atom, offset, error, residues, correction_recommended, corrected_by }: Offset): Value[] =>
  [atom, offset, error, residues, correction_recommended, corrected_by];
const matchOf = ({ file, chain, aligned, identical, mismatches, missing, residues }: Match): Value[] =>
  [file, chain, aligned, identical, ...mismatches, ...missing, residues];
const structureOf = ({ file, format, models, chains, notes }: Structure): Value[] =>
  [file, format, models, ...notes, ...chains.flatMap(({ chain, residues, ca_only }): Value[] => [chain, residues, ca_only])];

const proteinOf = ({ file, chain, list, length, shifts, referencing, prolines, warnings, notes, ...more }: Protein): Value[] =>
  [file, chain, list, length, shifts, more.deuteration, ...referencing.flatMap(offsetOf), ...prolines.flatMap(prolineOf), ...warnings, ...notes,
   ...(more.matches ?? []).flatMap(matchOf), ...(more.structure_notes ?? [])];

export function valuesOf({ format, version, program, tables, tables_fingerprint, thresholds, proteins, errors, ...more }: Result): Value[] {
  return [format, version, program, tables, tables_fingerprint, thresholds.cis_from, thresholds.trans_up_to, thresholds.cis_omega_up_to,
          thresholds.trans_omega_from, ...proteins.flatMap(proteinOf),
          ...errors.flatMap(({ file, message, needs_sequence }) => [file, message, needs_sequence]),
          ...(more.structures ?? []).flatMap(structureOf),
          ...(more.chains_without_shifts ?? [])];
}

export async function use(input: Input): Promise<string> {
  try {
    await load(new Uint8Array());
    await load("https://example.org/zorvela.wasm");
    const { version, tables } = await versions();
    return [version, tables, ...valuesOf(await predict(input, { name: "a.str", chains: ["A"] })),
            ...valuesOf(await predict(input, { asReferenced: true, deuterated: false, sequence: input, firstResidue: 17 })),
            await report([input, { name: "b", content: input }], { format: "csv", lists: ["all"], structures: input }),
            ...(await contents(input)).map(({ file, chain, list }) => [file, chain, list]),
            ...(await shiftTables([input])).map(({ table }) => table), (await flaggedNef(input, { trans: true })).text,
            ...(await restraints(input, { program: "cyana", chainAs: ["1=A"] })).notes].join();
  } catch (error) {
    return error instanceof PredictionError ? error.message : "";
  }
}
