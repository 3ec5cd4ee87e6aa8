// The product files that a vendor wants to go with the program.

import { lstatSync, readdirSync } from 'node:fs';
import { join } from 'node:path';

// In the folder that the setup file unpacks into, and in that of the product, these fit into the 260 characters of Windows.
const longestPath = 200;

// What the file names of Windows cannot be.
const forbiddenName = /[<>:"|?*\\\x00-\x1f]|[. ]$|^(con|prn|aux|nul|com[0-9]|lpt[0-9])(\.|$)/i;

/**
 * The plain files below a folder as paths from there, sorted by their bytes. Throws for anything that has no place in a
 * download, and for names that Windows would refuse or take for one another.
 */
export function productFiles(folder, facts) {
  const files = [];
  const walk = (below) => {
    for (const name of readdirSync(join(folder, below))) {
      const file = join(below, name);
      const kind = lstatSync(join(folder, file));
      if (forbiddenName.test(name)) {
        throw new Error(`${file} among the products has a name that Windows does not allow`);
      } else if (file.length > longestPath) {
        throw new Error(`${file} among the products is longer than ${longestPath} characters`);
      } else if (kind.isDirectory()) {
        walk(file);
      } else if (!kind.isFile()) {
        throw new Error(`${file} among the products is neither a file nor a folder`);
      } else if (/\.pem$/i.test(name)) {
        throw new Error(`${file} among the products is a key, which nobody else may get`);
      } else {
        files.push(file);
      }
    }
  };
  walk('');
  for (const file of facts.requiredFiles) {
    if (!files.includes(file)) {
      throw new Error(`${file} is missing among the products`);
    }
  }
  const clash = files.find((file) => /^orvantainstaller(\.exe|-license\.txt|-notices\.txt)$/i.test(file));
  if (clash) {
    throw new Error(`${clash} is among the products; the release brings its own`);
  }
  const seen = new Map();
  for (const file of files) {
    const other = seen.get(file.toUpperCase());
    if (other) {
      throw new Error(`${other} and ${file} among the products have the same name on Windows`);
    }
    seen.set(file.toUpperCase(), file);
  }
  return files.sort();
}
