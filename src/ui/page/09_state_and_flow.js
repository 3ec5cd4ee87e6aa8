// State of the page
let selected = { fwc: true, lw: true };
let browsers = [];
let currentBrowserIdx = 0;
let currentScreen = 's-welcome';
let carouselTimer = null;
let carouselIdx = 0;

// What the store writes on its "Add to ..." button, by browser
const browserAddLabel = {
  'Microsoft Edge': 'Edge',
  'Google Chrome': 'Chrome',
  'Brave': 'Brave',
  'Vivaldi': 'Vivaldi',
  'Opera': 'Opera',
  'Opera GX': 'Opera'
};

function send(obj) {
  window.chrome.webview.postMessage(JSON.stringify(obj));
}

// The words change at noon and five, the picture at six and five: early in the
// morning the moon stands beside "Good morning".
(function () {
  const h = new Date().getHours();
  const greeting = h < 12 ? 'Good morning' : h < 17 ? 'Good afternoon' : 'Good evening';
  document.getElementById('greeting').textContent = greeting;
  const icon = h >= 6 && h < 17 ? 'icon-sun' : 'icon-moon';
  document.getElementById(icon).style.display = 'block';
})();

// Screens that are not on show can neither be reached with the keyboard nor read aloud. The one that comes on show
// takes the focus, without a ring around the whole window.
document.querySelectorAll('.screen').forEach(function (screen) {
  screen.inert = !screen.classList.contains('active');
  screen.tabIndex = -1;
  screen.style.outline = 'none';
});

document.querySelectorAll('.product-card').forEach(function (card) {
  card.setAttribute('aria-label', card.querySelector('h3').textContent);
  card.setAttribute('aria-description', card.querySelector('p').textContent);
  card.addEventListener('keydown', function (e) {
    if (e.key !== ' ' && e.key !== 'Enter') return;
    e.preventDefault();
    if (!e.repeat) card.click();
  });
});

// What a person does counts once: a key that is held, a button pressed again before anything has come of it, a double
// click whose second half meets what has come up in the same place. The page's functions know nothing of this.
let pressedButton = null;
let lastClick = null;
let lastTarget = null;

document.addEventListener('keydown', function (e) {
  if (e.repeat && (e.key === ' ' || e.key === 'Enter')) e.preventDefault();
}, true);

document.addEventListener('click', function (e) {
  const target = e.target.closest('button, .product-card');
  if (!e.isTrusted || !target) return;
  // Not whoever clicks for a person counts clicks. A key's click has no place, and counts 0.
  const isSecondHalf = e.detail > 1 || (e.detail === 1 && lastClick && e.timeStamp - lastClick.timeStamp < 500
    && Math.hypot(e.clientX - lastClick.clientX, e.clientY - lastClick.clientY) < 3);
  lastClick = e;
  if (target === pressedButton || (isSecondHalf && target !== lastTarget)) {
    e.stopPropagation();
    return;
  }
  lastTarget = target;
  if (target.localName === 'button') pressedButton = target;
}, true);

function toggleProduct(id) {
  selected[id] = !selected[id];
  const card = document.getElementById('card-' + id);
  card.classList.toggle('selected', selected[id]);
  card.setAttribute('aria-checked', selected[id]);
  card.querySelector('.check').innerHTML = selected[id] ? '&#x2713;' : '';
  document.getElementById('btn-install').disabled = !selected.fwc && !selected.lw;
}

// Nothing of it can be pressed any more. inert alone would take the focus away only with the next frame.
function withdraw(element) {
  element.inert = true;
  if (element.contains(document.activeElement)) document.activeElement.blur();
}

// Screen readers read the name of what takes the focus.
function focusScreen(id) {
  document.getElementById(id).focus({ preventScroll: true });
}

// The old screen leaves at once, the new one enters 100 ms later.
function goTo(id) {
  const prev = document.getElementById(currentScreen);
  const next = document.getElementById(id);
  if (prev) {
    prev.classList.remove('active');
    prev.classList.add('exit');
    withdraw(prev);
  }
  setTimeout(function () {
    if (prev) prev.classList.remove('exit');
    if (next) {
      next.classList.add('active');
      next.inert = false;
      // Its animation came to its end when nobody could see it.
      next.querySelectorAll('.complete-icon').forEach(function (icon) {
        icon.style.animationName = 'none';
        icon.getBoundingClientRect();
        icon.style.animationName = '';
      });
      pressedButton = null;
      focusScreen(id);
    }
    currentScreen = id;
  }, 100);
}

function setProgress(pct) {
  document.getElementById('progress-fill').style.width = pct + '%';
  document.getElementById('progress-pct').textContent = pct + '%';
  const track = document.querySelector('.progress-track');
  track.setAttribute('aria-valuenow', pct);
  track.setAttribute('aria-valuetext', pct + '%');
}

function beginInstall() {
  goTo('s-installing');
  startCarousel();
  setTimeout(function () {
    send({ action: 'install', fwc: selected.fwc, lw: selected.lw });
  }, 400);
}

function startUninstall() {
  goTo('s-uninstalling');
  setTimeout(function () {
    send({ action: 'uninstall' });
  }, 400);
}

function startCarousel() {
  carouselIdx = 0;
  showSlide(0);
  carouselTimer = setInterval(function () {
    carouselIdx = (carouselIdx + 1) % 5;
    showSlide(carouselIdx);
  }, 4000);
}

function showSlide(idx) {
  const slides = document.querySelectorAll('.carousel-slide');
  const dots = document.querySelectorAll('.carousel-dots .dot');
  slides.forEach(function (slide) { slide.classList.remove('active'); });
  dots.forEach(function (dot) { dot.classList.remove('active'); });
  if (slides[idx]) slides[idx].classList.add('active');
  if (dots[idx]) dots[idx].classList.add('active');
}
