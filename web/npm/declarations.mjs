// Writes index.d.ts: the functions of the package, and the types that the JSON schema describes.
//   node declarations.mjs run.schema.json index.d.ts.in index.d.ts
import { readFileSync, writeFileSync } from "node:fs";

const [schemaPath, templatePath, outputPath] = process.argv.slice(2);
const schema = JSON.parse(readFileSync(schemaPath, "utf8"));

const typeName = (name) => name[0].toUpperCase() + name.slice(1).replace(/_./g, (part) => part[1].toUpperCase());
const PLAIN = { string: "string", number: "number", integer: "number", boolean: "boolean", null: "null" };

function comment(text, indent) {
  return text === undefined ? "" : `${indent}/** ${text} */\n`;
}

function unionOf(types) {
  return [...new Set(types)].join(" | ");
}

function typeOf(node, indent) {
  if (node.$ref !== undefined) return typeName(node.$ref.replace("#/$defs/", ""));
  if (node.const !== undefined) return JSON.stringify(node.const);
  if (node.enum !== undefined) return unionOf(node.enum.map((value) => JSON.stringify(value)));
  for (const choice of [node.oneOf, node.anyOf])
    if (choice !== undefined) return unionOf(choice.map((option) => typeOf(option, indent)));
  const types = [node.type].flat();
  return unionOf(types.map((type) => {
    if (type === "array") {
      const item = typeOf(node.items, indent);
      return item.includes("|") ? `(${item})[]` : `${item}[]`;
    }
    if (type === "object" && node.properties === undefined)
      return `Record<${typeOf(node.propertyNames, indent)}, ${typeOf(node.additionalProperties, indent)}>`;
    if (type === "object") return membersOf(node, indent);
    if (PLAIN[type] === undefined) throw new Error(`no type for ${JSON.stringify(node)}`);
    return PLAIN[type];
  }));
}

function membersOf(node, indent) {
  const inner = `${indent}  `;
  const required = new Set(node.required);
  const members = Object.entries(node.properties).map(([name, member]) =>
    `${comment(member.description, inner)}${inner}${name}${required.has(name) ? "" : "?"}: ${typeOf(member, inner)};\n`);
  return `{\n${members.join("")}${indent}}`;
}

function declaration(name, node) {
  const isObject = node.type === "object";
  const text = isObject ? `export interface ${name} ${membersOf(node, "")}\n` : `export type ${name} = ${typeOf(node, "")};\n`;
  return comment(node.description, "") + text;
}

const types = [declaration("Result", schema),
               ...Object.entries(schema.$defs).map(([name, node]) => declaration(typeName(name), node))];
writeFileSync(outputPath, readFileSync(templatePath, "utf8").replace("@TYPES@", () => types.join("\n").trimEnd()));
