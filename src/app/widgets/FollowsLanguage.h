// A widget that shows composed texts: sentences with numbers, names or translated parts. localizeView asks it to show
// them again in the interface's language.
#pragma once

namespace tessaly {

class FollowsLanguage {
 public:
  virtual ~FollowsLanguage() = default;
  virtual void refreshLanguage() = 0;
};

}  // namespace tessaly
