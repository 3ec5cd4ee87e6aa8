#include "runs/uninstall_run.h"

#include "browsers/closing.h"
#include "common/quiet_thread.h"
#include "console/uninstall.h"
#include "linkward/uninstall.h"
#include "runs/progress.h"
#include "ui/page_channel.h"
#include "ui/protocol.h"

DWORD WINAPI uninstall_thread_proc(void* /*unused*/) noexcept {
    make_thread_quiet();
    close_browsers(uninstall_reporter);
    uninstall_fwc(uninstall_reporter);
    uninstall_linkward(uninstall_reporter);
    post_to_page(uninstall_done_message);
    return 0;
}
