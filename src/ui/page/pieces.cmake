# The pieces of the installer page, in the order in which they are joined.
set(page_pieces
  01_document_and_base_styles.html
  02_product_card_and_carousel_styles.html
  03_progress_and_completion_styles.html
  04_welcome.html
  05_close_browsers.html
  06_installing.html
  07_browser_steps.html
  08_completion_and_removal.html
  09_state_and_flow.js
  10_host_messages.js
  11_browser_steps.js)
