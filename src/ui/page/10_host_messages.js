
// Messages from the host. A text that does not parse is dropped.
window.chrome.webview.addEventListener('message', function (e) {
  let data;
  try {
    data = JSON.parse(e.data);
  } catch {
    return;
  }
  switch (data?.action) {
    case 'status':
      showLine('progress-label', data.text);
      break;
    case 'pct':
      setProgress(data.v);
      break;
    case 'progress':
      showLine('progress-label', data.step || '');
      break;
    case 'browsers_detected':
      browsers = data.browsers || [];
      finishInstalling();
      setTimeout(function () {
        if (browsers.length > 0) {
          currentBrowserIdx = 0;
          showBrowserStep();
          goTo('s-browser');
        } else {
          goTo('s-firefox-notice');
        }
      }, 800);
      break;
    case 'webstore_opened':
      // Time for the browser's window to come up in front.
      setTimeout(function () {
        document.getElementById('browser-actions').style.display = 'none';
        document.getElementById('browser-confirm').style.display = 'flex';
      }, 1500);
      break;
    case 'amo_opened':
      goTo('s-complete');
      break;
    case 'install_complete':
      finishInstalling();
      setTimeout(function () { goTo('s-complete'); }, 800);
      break;
    case 'uninstall_progress':
      showLine('uninstall-status', data.step || 'Cleaning up...');
      break;
    case 'uninstall_done':
      setTimeout(function () { goTo('s-uninstall-done'); }, 600);
      break;
  }
});

// A line that reads so already stays as it is: screen readers would read it out again.
function showLine(id, text) {
  const line = document.getElementById(id);
  if (line.textContent !== text) line.textContent = text;
}

function finishInstalling() {
  setProgress(100);
  showLine('progress-label', 'Installation complete!');
  if (carouselTimer) clearInterval(carouselTimer);
}
