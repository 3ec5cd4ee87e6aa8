// Folders with the product files and the installer, made for one acceptance in the temporary folder.
#pragma once

#include <string>

#include "kit.h"

/// Three media beside each other; all of them go at the end of the scope.
class Media {
  public:
    /// Throws std::runtime_error when they cannot be made.
    explicit Media(const Kit& kit);
    Media(const Media&) = delete;
    Media& operator=(const Media&) = delete;
    ~Media();

    /// The products with the installer beside them, as a customer has them.
    [[nodiscard]] std::wstring complete() const { return root_ + L"\\medium"; }
    /// The installer there.
    [[nodiscard]] std::wstring installer() const;
    /// The products without the console's program.
    [[nodiscard]] std::wstring incomplete() const { return root_ + L"\\medium without console"; }
    /// The products with a service that ends with an error as soon as it is started.
    [[nodiscard]] std::wstring with_failing_service() const {
        return root_ + L"\\medium with failing service";
    }

  private:
    std::wstring root_;
};
