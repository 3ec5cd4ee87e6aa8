// What the browser tells a screen reader about the opened page.

// Said of every text and box anew, without meaning of its own.
const silent = new Set(['generic', 'InlineTextBox', 'LineBreak', 'strong', 'paragraph']);

/** The tree's nodes that are not ignored, in their order: the browser's own records. */
export async function accessibilityNodes(installer) {
  const session = await installer.page.context().newCDPSession(installer.page);
  const { nodes } = await session.send('Accessibility.getFullAXTree');
  await session.detach();
  const byId = new Map(nodes.map((node) => [node.nodeId, node]));
  const ordered = [];
  const walk = (node) => {
    if (!node.ignored) ordered.push(node);
    for (const id of node.childIds) walk(byId.get(id));
  };
  walk(nodes[0]);
  return ordered;
}

/** A property of a node: "focused", "checked" and the like. */
export const property = (node, name) => node.properties?.find((candidate) => candidate.name === name)?.value.value;

/** The tree in words: each node's role and name, texts by themselves. What stands below a check box belongs to it. */
export async function accessibilityTree(installer) {
  const nodes = await accessibilityNodes(installer);
  const inCheckBox = new Set();
  for (const node of nodes) {
    if (node.role.value === 'checkbox' || inCheckBox.has(node.nodeId)) node.childIds.forEach((id) => inCheckBox.add(id));
  }
  return nodes.filter((node) => !inCheckBox.has(node.nodeId) && !silent.has(node.role.value))
    .map((node) => (node.role.value === 'StaticText' ? node.name.value : `${node.role.value}: ${node.name.value}`));
}
