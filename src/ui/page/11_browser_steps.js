
// One step per detected browser
function showBrowserStep() {
  const b = browsers[currentBrowserIdx];
  const shortName = browserAddLabel[b.name] || b.name;
  document.getElementById('browser-counter').textContent =
    'Browser ' + (currentBrowserIdx + 1) + ' of ' + browsers.length;
  document.getElementById('browser-name').textContent = b.name;
  document.getElementById('browser-name2').textContent = shortName;
  document.getElementById('browser-name3').textContent = shortName;
  document.getElementById('browser-name4').textContent = shortName;
  document.getElementById('browser-actions').style.display = 'flex';
  document.getElementById('browser-confirm').style.display = 'none';
  document.getElementById('btn-open-store').disabled = false;
  pressedButton = null;
}

function openStore() {
  document.getElementById('btn-open-store').disabled = true;
  // A disabled button loses the focus to nobody.
  focusScreen('s-browser');
  send({ action: 'open_webstore', index: browsers[currentBrowserIdx].index });
}

// The step jumps out to the right, and the next one slides in from the left.
function browserDone() {
  currentBrowserIdx++;
  if (currentBrowserIdx >= browsers.length) {
    goTo('s-firefox-notice');
    return;
  }
  const step = document.querySelector('.browser-step');
  withdraw(step);
  step.style.opacity = '0';
  step.style.transform = 'translateX(30px)';
  setTimeout(function () {
    step.inert = false;
    showBrowserStep();
    focusScreen('s-browser');
    step.style.transform = 'translateX(-30px)';
    // Laid out there, or the step would never have been on the left and come back from the right.
    step.getBoundingClientRect();
    requestAnimationFrame(function () {
      step.style.transition = 'all 0.3s ease';
      step.style.opacity = '1';
      step.style.transform = 'translateX(0)';
      setTimeout(function () { step.style.transition = ''; }, 300);
    });
  }, 250);
}

// The document ends here. </script></body></html>
