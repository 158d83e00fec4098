// Runs a WebAssembly program with the arguments that follow its name.
import { readFileSync } from "node:fs";
import { argv, exit } from "node:process";
import { WASI } from "node:wasi";

const wasi = new WASI({ version: "preview1", args: argv.slice(2), returnOnExit: true });
const { instance } = await WebAssembly.instantiate(readFileSync(argv[2]), wasi.getImportObject());
exit(wasi.start(instance));
