// What the catalogue says of tags beyond their names.
#pragma once

namespace xmlpxd {

// Whether a walk steps into an element of this tag rather than past it. Some elements that have
// children are deliberately not among them: walks over their files rely on being led past them.
bool IsContainer(unsigned int tagId);

}  // namespace xmlpxd
