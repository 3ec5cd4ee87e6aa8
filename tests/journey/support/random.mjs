// Random choices that a seed repeats, and which seeds a run takes.

/** Choices of one seed; the generator is mulberry32. */
export function randomOf(seed) {
  let state = seed >>> 0;
  const next = () => {
    state = (state + 0x6D2B79F5) >>> 0;
    let mixed = Math.imul(state ^ (state >>> 15), state | 1);
    mixed ^= mixed + Math.imul(mixed ^ (mixed >>> 7), mixed | 61);
    return (mixed ^ (mixed >>> 14)) >>> 0;
  };
  const random = {
    /** A whole number from 0 to `limit` - 1. */
    below: (limit) => Math.floor(next() / 2 ** 32 * limit),
    /** True in `percent` of 100 cases. */
    chance: (percent) => random.below(100) < percent,
    pick: (list) => list[random.below(list.length)],
    bytes: (count) => Buffer.from(Uint8Array.from({ length: count }, () => next() >>> 24)),
    /** What `holds` has said yes to. */
    features: new Set(),
    /** Whether the case is to have a feature, as true in `percent` of 100 cases. */
    holds: (percent, feature) => random.chance(percent) && Boolean(random.features.add(feature)),
  };
  return random;
}

/**
 * The seeds of this run: `ordinary` ones, or those that ORVANTA_SEEDS names as numbers and ranges with commas, such
 * as "7" or "1-500" or "3,20-40".
 */
export function seedsOfRun(ordinary) {
  const wanted = process.env.ORVANTA_SEEDS;
  if (!wanted) {
    return ordinary;
  }
  return wanted.split(',').flatMap((part) => {
    const [, first, last = first] = part.match(/^(\d+)(?:-(\d+))?$/) ?? [];
    if (first === undefined || Number(last) < Number(first)) {
      throw new Error(`ORVANTA_SEEDS: '${part}' is neither a number nor a range`);
    }
    return Array.from({ length: Number(last) - Number(first) + 1 }, (_, i) => Number(first) + i);
  });
}

/** Runs `test` and adds to what it throws how to run the same seed again. */
export async function withSeed(seed, testName, test) {
  try {
    await test();
  } catch (error) {
    error.message = `seed ${seed} (again with: ORVANTA_SEEDS=${seed} ./test ${testName})\n${error.message}`;
    throw error;
  }
}
