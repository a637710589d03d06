import type { Server } from "node:http";

export function serve(folder: string, port: number, plain?: boolean): Promise<Server>;
