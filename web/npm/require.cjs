throw new Error('zorvela is an ES module: write `import { predict } from "zorvela"`, or in CommonJS ' +
  '`const { predict } = await import("zorvela")`; require() takes it from Node 20.19 and 22.12 on');
