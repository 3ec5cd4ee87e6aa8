# Values that the vendor of the products sets. They reach the program through
# src/common/product_config.h.in and are checked there at compile time.

set(ORVANTA_EXTENSION_STORE_HOST "chromewebstore.brackenfold.example" CACHE STRING
  "Host of the browser extension store whose page is opened for each detected browser")
set(ORVANTA_FIREFOX_ADDONS_HOST "addons.brackenfold.example" CACHE STRING
  "Host of the Firefox add-ons site whose page the Firefox step opens")
set(ORVANTA_FIREFOX_ADDON_ID "veyra-linkward@apps.brackenfold.example" CACHE STRING
  "Firefox add-on id of the browser extension; exactly 39 ASCII characters")
set(ORVANTA_PUBLISHER_URL "https://www.brackenfold.example/" CACHE STRING
  "Publisher address shown in Add/Remove Programs (URLInfoAbout)")
