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

function toggleProduct(id) {
  selected[id] = !selected[id];
  const card = document.getElementById('card-' + id);
  card.classList.toggle('selected', selected[id]);
  card.querySelector('.check').innerHTML = selected[id] ? '&#x2713;' : '';
  document.getElementById('btn-install').disabled = !selected.fwc && !selected.lw;
}

// The old screen leaves at once, the new one enters 100 ms later.
function goTo(id) {
  const prev = document.getElementById(currentScreen);
  const next = document.getElementById(id);
  if (prev) {
    prev.classList.remove('active');
    prev.classList.add('exit');
  }
  setTimeout(function () {
    if (prev) prev.classList.remove('exit');
    if (next) next.classList.add('active');
    currentScreen = id;
  }, 100);
}

function setProgress(pct) {
  document.getElementById('progress-fill').style.width = pct + '%';
  document.getElementById('progress-pct').textContent = pct + '%';
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
